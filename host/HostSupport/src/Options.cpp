#include <HostSupport/Options.h>
#include <HostSupport/saving.h>

#include "Registry.h"

#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <QVariant>

#include <algorithm>

namespace {

/// Opens the options file for one access, so that several programs may share it.
class OptionsFile
{
public:
    OptionsFile()
        : m_settings(QString::fromStdString(host::optionsFile()), host::settingsFormat())
    {
    }

    QVariant value(const std::string& name) const
    {
        return m_settings.value(QString::fromStdString(name));
    }

    void set(const std::string& name, const std::string& value)
    {
        m_settings.setValue(QString::fromStdString(name), QString::fromStdString(value));
        write();
    }

    void remove(const std::string& name)
    {
        m_settings.remove(QString::fromStdString(name));
        write();
    }

private:
    void write()
    {
        m_settings.sync();
        if (m_settings.status() != QSettings::NoError)
            throw std::runtime_error("Cannot write options file: " + host::optionsFile());
    }

    QSettings m_settings;
};

} // namespace

int sp_ReadOptionsInfo(const char* name, YString* value, const YString& defaultValue)
{
    const QVariant current = OptionsFile().value(name);
    if (current.isValid()) {
        // QSettings returns a text with commas as a list.
        *value = current.toStringList().join(QStringLiteral(", ")).toUtf8().constData();
        return 0;
    }
    for (const host::OptionInfo& option : host::registry().options) {
        if (option.name == name) {
            *value = option.defaultValue.c_str();
            return 0;
        }
    }
    *value = defaultValue;
    return 1;
}

namespace host {

void setOptionsFile(const std::string& path)
{
    registry().optionsFile = path;
}

std::string optionsFile()
{
    if (!registry().optionsFile.empty())
        return registry().optionsFile;
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return (directory + QStringLiteral("/zvhost/options.ini")).toStdString();
}

void writeOption(const std::string& name, const std::string& value)
{
    OptionsFile().set(name, value);
}

void resetOption(const std::string& name)
{
    OptionsFile().remove(name);
}

} // namespace host
