#include <HostSupport/saving.h>

#include <QFile>
#include <QFileDevice>
#include <QSaveFile>
#include <QSet>
#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <stdexcept>

namespace {

constexpr char codec[] = "UTF-8";

/// The one key of settings that are in their file but couldn't be read for want of space, so that they
/// aren't replaced by the few that are set next.
const QString& unreadMark()
{
    static const QString key = QStringLiteral("unread settings");
    return key;
}

/// Returns false after an error, which the file tells. Qt reports a block of which the disk took
/// only the beginning as written, with no error; the rest is asked for here until there is one.
bool writeAll(QFileDevice& file, const char* data, qint64 size)
{
    while (size > 0) {
        const qint64 written = file.write(data, size);
        if (written <= 0)
            return false;
        data += written;
        size -= written;
    }
    return file.flush();
}

/// A group has a heading, and an empty line before it but for the first.
int linesOf(const QStringList& keys)
{
    QSet<QString> groups;
    for (const QString& key : keys)
        groups.insert(key.contains(QLatin1Char('/')) ? key.section(QLatin1Char('/'), 0, 0)
                                                     : QString());
    return groups.isEmpty() ? 0 : keys.size() + 2 * groups.size() - 1;
}

/// The settings as an INI file, or nothing if they couldn't be put together.
std::optional<QByteArray> iniOf(const QSettings::SettingsMap& settings)
{
    // QSettings writes to files alone, and doesn't notice that one is cut off.
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.ini")));
    QStringList keys;
    {
        QSettings ini(file.fileName(), QSettings::IniFormat);
        ini.setIniCodec(codec);
        for (auto entry = settings.begin(); entry != settings.end(); ++entry)
            ini.setValue(entry.key(), entry.value());
        // On Windows keys that differ in case alone become one.
        keys = ini.allKeys();
    }
    if (!file.open(QIODevice::ReadOnly))
        return settings.isEmpty() ? std::make_optional<QByteArray>() : std::nullopt;
    const QByteArray bytes = file.readAll();
    return bytes.count('\n') == linesOf(keys) ? std::make_optional(bytes) : std::nullopt;
}

bool readSettings(QIODevice& device, QSettings::SettingsMap& settings)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.ini")));
    const QByteArray bytes = device.readAll();
    if (!file.open(QIODevice::WriteOnly) || !writeAll(file, bytes.constData(), bytes.size())) {
        // QSettings would drop the mark along with a failure, and tells of it when it can't write.
        settings.insert(unreadMark(), true);
        return true;
    }
    file.close();
    QSettings ini(file.fileName(), QSettings::IniFormat);
    ini.setIniCodec(codec);
    const QStringList keys = ini.allKeys();
    for (const QString& key : keys)
        settings.insert(key, ini.value(key));
    return ini.status() == QSettings::NoError;
}

bool writeSettings(QIODevice& device, const QSettings::SettingsMap& settings)
{
    if (settings.contains(unreadMark()))
        return false;
    const std::optional<QByteArray> bytes = iniOf(settings);
    auto* const file = qobject_cast<QFileDevice*>(&device);
    return bytes && file && writeAll(*file, bytes->constData(), bytes->size());
}

} // namespace

namespace host {

void saveFile(const std::string& file, const std::string& content)
{
    QSaveFile target(QString::fromStdString(file));
    if (!target.open(QIODevice::WriteOnly)
        || !writeAll(target, content.data(), static_cast<qint64>(content.size()))
        || !target.commit())
        throw std::runtime_error(target.errorString().toStdString());
}

QSettings::Format settingsFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("ini"), &readSettings, &writeSettings);
    return format;
}

} // namespace host
