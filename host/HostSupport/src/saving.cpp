#include <HostSupport/saving.h>

#include "base/file_safety.h"

#include <QFile>
#include <QFileDevice>
#include <QLockFile>
#include <QSaveFile>
#include <QSet>
#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <stdexcept>

namespace {

constexpr char codec[] = "UTF-8";

/// The key that replaces all others when the settings couldn't be read for lack of space.
/// writeSettings() refuses such a map, so that the file isn't replaced by the few settings made
/// later.
const QString& unreadMark()
{
    static const QString key = QStringLiteral("unread settings");
    return key;
}

/// Returns false after an error, which \p file then reports. Qt returns a short count without an
/// error for a block that the disk took partially, so the loop writes the rest until there is an
/// error.
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

/// Why \p file couldn't be written. Qt knows nothing of the calls that it didn't make itself.
QString reasonFor(const QSaveFile& file)
{
    return file.error() == QFileDevice::NoError ? qt_error_string() : file.errorString();
}

/// The number of lines: each group has a heading, and each but the first an empty line before it.
int linesOf(const QStringList& keys)
{
    QSet<QString> groups;
    for (const QString& key : keys)
        groups.insert(key.contains(QLatin1Char('/')) ? key.section(QLatin1Char('/'), 0, 0)
                                                     : QString());
    return groups.isEmpty() ? 0 : keys.size() + 2 * groups.size() - 1;
}

/// The settings as an INI file, or nothing if that couldn't be made.
std::optional<QByteArray> iniOf(const QSettings::SettingsMap& settings)
{
    // QSettings only writes to files, and doesn't notice one that is cut off; so write a temporary
    // file and count its lines.
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.ini")));
    QStringList keys;
    {
        QSettings ini(file.fileName(), QSettings::IniFormat);
        ini.setIniCodec(codec);
        for (auto entry = settings.begin(); entry != settings.end(); ++entry)
            ini.setValue(entry.key(), entry.value());
        // Keys that differ only in case become one on Windows.
        keys = ini.allKeys();
    }
    if (!file.open(QIODevice::ReadOnly))
        return settings.isEmpty() ? std::make_optional<QByteArray>() : std::nullopt;
    const QByteArray bytes = file.readAll();
    return bytes.count('\n') == linesOf(keys) ? std::make_optional(bytes) : std::nullopt;
}

/// A key behind all others in the file that QSettings reads: without it the file wasn't read to its
/// end, which QSettings doesn't notice.
const QString& endMark()
{
    static const QString key = QStringLiteral("end of settings/end");
    return key;
}

/// Writes the INI file \p name that has all of \p device and the mark of its end.
bool copyMarked(QIODevice& device, const QString& name)
{
    const auto* const source = qobject_cast<QFileDevice*>(&device);
    const QByteArray bytes = device.readAll() + "\n[end%20of%20settings]\nend=1\n";
    QFile copy(name);
    return source && source->error() == QFileDevice::NoError && copy.open(QIODevice::WriteOnly)
        && writeAll(copy, bytes.constData(), bytes.size());
}

bool readSettings(QIODevice& device, QSettings::SettingsMap& settings)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("settings.ini"));
    const bool isCopied = copyMarked(device, name);
    QSettings ini(name, QSettings::IniFormat);
    ini.setIniCodec(codec);
    if (!isCopied || !ini.contains(endMark())) {
        // Return true: QSettings would drop the mark after a failure. It reports one when it can't
        // write.
        settings.insert(unreadMark(), true);
        return true;
    }
    const QStringList keys = ini.allKeys();
    for (const QString& key : keys) {
        if (key != endMark())
            settings.insert(key, ini.value(key));
    }
    return ini.status() == QSettings::NoError;
}

bool writeSettings(QIODevice& device, const QSettings::SettingsMap& settings)
{
    if (settings.contains(unreadMark()))
        return false;
    const std::optional<QByteArray> bytes = iniOf(settings);
    auto* const file = qobject_cast<QSaveFile*>(&device);
    return bytes && file && writeAll(*file, bytes->constData(), bytes->size())
        && zvutil::base::is_safe_to_commit(*file);
}

/// Whether QSettings would get its lock of \p file in time. A lock whose holder is gone is taken after
/// 30 seconds at the latest.
bool canBeLocked(const QString& file)
{
    constexpr int timeout = 35'000; // milliseconds
    const QString name = file + QStringLiteral(".lock");
    return !QFile::exists(name) || QLockFile(name).tryLock(timeout);
}

} // namespace

namespace host {

void saveFile(const std::string& file, const std::string& content)
{
    QSaveFile target(QString::fromStdString(file));
    if (!zvutil::base::open_safely(target)
        || !writeAll(target, content.data(), static_cast<qint64>(content.size()))
        || !zvutil::base::is_safe_to_commit(target) || !target.commit())
        throw std::runtime_error(reasonFor(target).toStdString());
}

QSettings::Format settingsFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("ini"), &readSettings, &writeSettings);
    return format;
}

bool isRead(const QSettings& settings)
{
    return settings.status() == QSettings::NoError && !settings.contains(unreadMark());
}

bool write(QSettings& settings)
{
    if (!canBeLocked(settings.fileName()))
        return false;
    settings.sync();
    return isRead(settings);
}

} // namespace host
