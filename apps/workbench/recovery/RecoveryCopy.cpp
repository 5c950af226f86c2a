#include "recovery/RecoveryCopy.h"

#include "common/private_files.h"

#include <HostSupport/saving.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <stdexcept>

namespace workbench {

namespace {

constexpr int maxVersion = 1;
constexpr qint64 maxDescription = 1'000'000; // bytes

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::RecoveryCopy)
};

/// Returns the checksum of a file, or an empty text if it can't be read.
QString checksumOf(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)
        || file.error() != QFileDevice::NoError)
        return {};
    return QString::fromLatin1(hash.result().toHex());
}

/// Returns \p number as a text: a number of JSON has 53 bits.
QJsonValue textOf(qint64 number)
{
    return QString::number(number);
}

QJsonObject jsonOf(const FileState& state)
{
    return {{QStringLiteral("exists"), state.exists},
            {QStringLiteral("size"), textOf(state.size)},
            {QStringLiteral("modified"), textOf(state.modified)},
            {QStringLiteral("id"), QString::number(state.id)}};
}

FileState stateOf(const QJsonObject& json)
{
    return {json[QStringLiteral("exists")].toBool(),
            json[QStringLiteral("size")].toString().toLongLong(),
            json[QStringLiteral("modified")].toString().toLongLong(),
            json[QStringLiteral("id")].toString().toULongLong()};
}

/// Returns the copy that a file describes. One that can't be read is damaged, and called like its file.
RecoveryCopy described(const std::shared_ptr<RecoveryFolder>& folder, const QString& name)
{
    RecoveryCopy copy;
    copy.folder = folder;
    copy.description = name;
    copy.title = name;
    copy.isDamaged = true;
    QFile file(QDir(folder->path()).filePath(name));
    copy.written = QFileInfo(file).lastModified();
    if (!file.open(QIODevice::ReadOnly))
        return copy;
    const QJsonObject json = QJsonDocument::fromJson(file.read(maxDescription)).object();
    const QString content = json[QStringLiteral("content")].toString();
    // A name with a path would have another program's file read, and removed afterwards.
    if (json[QStringLiteral("version")].toInt() != maxVersion || content.isEmpty()
        || QFileInfo(content).fileName() != content)
        return copy;
    copy.title = json[QStringLiteral("title")].toString();
    copy.typeId = json[QStringLiteral("type")].toString();
    copy.file = json[QStringLiteral("file")].toString();
    copy.content = content;
    if (json.contains(QStringLiteral("base")))
        copy.base = stateOf(json[QStringLiteral("base")].toObject());
    const QDateTime written =
        QDateTime::fromString(json[QStringLiteral("written")].toString(), Qt::ISODateWithMs);
    if (written.isValid())
        copy.written = written.toLocalTime();
    const QString checksum = checksumOf(copy.contentPath());
    copy.isDamaged = checksum.isEmpty() || checksum != json[QStringLiteral("checksum")].toString();
    return copy;
}

/// Returns whether a file is a description: names of contents have a hyphen, and may have any extension.
bool isDescription(const QString& name)
{
    return name.endsWith(QLatin1String(".json")) && !name.contains(QLatin1Char('-'));
}

QList<RecoveryCopy> copiesIn(const std::shared_ptr<RecoveryFolder>& folder)
{
    QList<RecoveryCopy> copies;
    QDir dir(folder->path());
    const QStringList names = dir.entryList(QDir::Files | QDir::Hidden);
    QStringList used;
    bool isComplete = true;
    for (const QString& name : names) {
        if (!isDescription(name))
            continue;
        copies.append(described(folder, name));
        used += {name, copies.constLast().content};
        isComplete = isComplete && !copies.constLast().content.isEmpty();
    }
    // While a description can't be read, nobody knows which content belongs to it.
    for (const QString& name : names) {
        if (isComplete && !used.contains(name))
            dir.remove(name);
    }
    return copies;
}

} // namespace

QString RecoveryCopy::contentPath() const
{
    return QDir(folder->path()).filePath(content);
}

void RecoveryCopy::writeDescription() const
{
    const QString checksum = checksumOf(contentPath());
    if (checksum.isEmpty() || !makePrivate(contentPath()))
        throw std::runtime_error(Texts::tr("The copy can't be read again.").toStdString());
    QJsonObject json{{QStringLiteral("version"), maxVersion},
                     {QStringLiteral("title"), title},
                     {QStringLiteral("type"), typeId},
                     {QStringLiteral("file"), file},
                     {QStringLiteral("content"), content},
                     {QStringLiteral("checksum"), checksum},
                     {QStringLiteral("written"), written.toUTC().toString(Qt::ISODateWithMs)}};
    if (base)
        json.insert(QStringLiteral("base"), jsonOf(*base));
    const QString path = QDir(folder->path()).filePath(description);
    host::saveFile(path.toStdString(), QJsonDocument(json).toJson().toStdString());
    makePrivate(path);
}

bool RecoveryCopy::remove() const
{
    QDir dir(folder->path());
    // The description goes first: without it the content is only what a program has left behind.
    if (dir.exists(description) && !dir.remove(description))
        return false;
    return content.isEmpty() || !dir.exists(content) || dir.remove(content);
}

QList<RecoveryCopy> RecoveryCopy::abandoned()
{
    QList<RecoveryCopy> copies;
    for (const std::shared_ptr<RecoveryFolder>& folder : RecoveryFolder::abandoned())
        copies += copiesIn(folder);
    std::stable_sort(
        copies.begin(), copies.end(),
        [](const RecoveryCopy& a, const RecoveryCopy& b) { return a.written > b.written; });
    return copies;
}

} // namespace workbench
