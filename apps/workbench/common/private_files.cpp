#include "common/private_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace workbench {

namespace {

constexpr QFile::Permissions forFiles = QFile::ReadOwner | QFile::WriteOwner;

/// Changes permissions only where they are others: a user may have none to change them.
bool setPermissions(const QString& name, QFile::Permissions wanted)
{
#if defined(Q_OS_UNIX)
    const QFile::Permissions ofUser =
        QFile::ReadUser | QFile::WriteUser | QFile::ExeUser; // Qt adds them.
    return (QFile::permissions(name) & ~ofUser) == wanted || QFile::setPermissions(name, wanted);
#else
    Q_UNUSED(wanted)
    return QFileInfo::exists(name);
#endif
}

} // namespace

bool makePrivateFolder(const QString& folder)
{
    return QDir().mkpath(folder) && setPermissions(folder, forFiles | QFile::ExeOwner);
}

bool makePrivate(const QString& file)
{
    return setPermissions(file, forFiles);
}

bool makePrivateFile(const QString& file)
{
    QFile made(file);
    if (made.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        made.close();
    return makePrivate(file);
}

} // namespace workbench
