#include "documents/FileState.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <tuple>

#if defined(Q_OS_WIN)
#include <windows.h>
#elif defined(Q_OS_UNIX)
#include <sys/stat.h>
#endif

namespace workbench {

namespace {

/// Returns the number of a file on its disk, by which a file that replaces another one differs even if it has
/// the same size and time.
quint64 idOf([[maybe_unused]] const QString& file)
{
#if defined(Q_OS_WIN)
    const QString path = QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath());
    const HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), 0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return 0;
    BY_HANDLE_FILE_INFORMATION info = {};
    const bool isKnown = GetFileInformationByHandle(handle, &info) != 0;
    CloseHandle(handle);
    return isKnown ? quint64(info.nFileIndexHigh) << 32U | info.nFileIndexLow : 0;
#elif defined(Q_OS_UNIX)
    struct stat info = {};
    return stat(QFile::encodeName(file).constData(), &info) == 0 ? quint64(info.st_ino) : 0;
#else
    return 0;
#endif
}

auto values(const FileState& state)
{
    return std::tie(state.exists, state.size, state.modified, state.id);
}

} // namespace

FileState FileState::of(const QString& file)
{
    const QFileInfo info(file);
    if (!info.exists())
        return {};
    return {true, info.size(), info.lastModified().toMSecsSinceEpoch(), idOf(file)};
}

bool operator==(const FileState& a, const FileState& b)
{
    return values(a) == values(b);
}

bool operator!=(const FileState& a, const FileState& b)
{
    return !(a == b);
}

} // namespace workbench
