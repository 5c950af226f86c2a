#include <HostSupport/Options.h>
#include <HostSupport/saving.h>

#include "Registry.h"

#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <QVariant>

#include <algorithm>

namespace {

/// The options file, opened for one access, so that several programs may share it.
class OptionsFile
{
public:
    OptionsFile()
        : m_settings(QString::fromStdString(host::optionsFile()), host::settingsFormat())
    {
    }

    bool isReadable() const { return host::isRead(m_settings); }

    QVariant value(const std::string& name) const
    {
        return m_settings.value(QString::fromStdString(name));
    }

    /// Sets an option, or removes it if \p value is invalid. Returns whether that is in the file now.
    bool change(const std::string& name, const QVariant& value)
    {
        // Look first: without the other options there is nothing to remove, and they would be lost.
        if (!isReadable())
            return false;
        const QVariant before = this->value(name);
        put(name, value);
        if (host::write(m_settings))
            return true;
        // Take the change back: QSettings keeps it for the next time that the process writes.
        put(name, before);
        return false;
    }

private:
    void put(const std::string& name, const QVariant& value)
    {
        if (value.isValid())
            m_settings.setValue(QString::fromStdString(name), value);
        else
            m_settings.remove(QString::fromStdString(name));
    }

    QSettings m_settings;
};

void changeOption(const std::string& name, const QVariant& value)
{
    if (!OptionsFile().change(name, value))
        throw std::runtime_error("Cannot write options file: " + host::optionsFile());
}

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
    changeOption(name, QString::fromStdString(value));
}

void resetOption(const std::string& name)
{
    changeOption(name, QVariant());
}

} // namespace host
