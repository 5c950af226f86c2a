#include "base/file_safety.h"

#include <QFileDevice>

#include <io.h>
#include <windows.h>

namespace zvutil::base {

bool bring_to_disk(QFileDevice& file)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file.handle()));
    return FlushFileBuffers(handle) != 0 || GetLastError() == ERROR_INVALID_FUNCTION;
}

bool follow_links(QSaveFile& /*file*/)
{
    // Leave links to Qt, which also follows those of the desktop.
    return true;
}

} // namespace zvutil::base
