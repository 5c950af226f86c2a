#pragma once

#include <QLibrary>
#include <QString>

#if defined(Q_OS_WIN)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zvtest {

/// Whether the process holds the shared library \p file.
inline bool isInProcess(const QString& file)
{
#if defined(Q_OS_WIN)
    return GetModuleHandleW(reinterpret_cast<const wchar_t*>(file.utf16())) != nullptr;
#else
    void* handle = dlopen(file.toLocal8Bit().constData(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
#endif
}

} // namespace zvtest
