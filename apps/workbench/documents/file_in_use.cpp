#include "documents/file_in_use.h"

#include "common/path_names.h"

#include <QDir>
#include <QFileInfo>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace workbench {

bool isInUse([[maybe_unused]] const zvutil::ZvFilePath& file)
{
#if defined(Q_OS_WIN)
    const QString path = QDir::toNativeSeparators(QFileInfo(qtFileName(file)).absoluteFilePath());
    const HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), DELETE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(handle);
#endif
    return false;
}

} // namespace workbench
