#include "base/file_safety.h"

#include <QFile>
#include <QSaveFile>

namespace zvutil::base {

namespace {

bool keep_permissions(QSaveFile& file)
{
    // Leave out the rights of the current user, which Qt adds and no file has.
    const QFile::Permissions kept = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
        | QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
        | QFile::WriteOther | QFile::ExeOther;
    const QFile::Permissions wanted = QFile::permissions(file.fileName()) & kept;
    return wanted == QFile::Permissions() || (file.permissions() & kept) == wanted
        || file.setPermissions(wanted);
}

} // namespace

bool open_safely(QSaveFile& file)
{
    return follow_links(file) && file.open(QIODevice::WriteOnly);
}

bool is_safe_to_commit(QSaveFile& file)
{
    // Look at the error first: a change of permissions that works would clear it.
    return file.flush() && file.error() == QFileDevice::NoError && keep_permissions(file)
        && bring_to_disk(file);
}

} // namespace zvutil::base
