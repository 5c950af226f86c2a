#pragma once

#include <QtGlobal>

#if defined(Q_OS_WIN)
#include "support/ImportTable.h"

#include <algorithm>
#include <array>
#include <atomic>
#else
#include <csignal>
#include <sys/resource.h>
#endif

namespace zvtest {

#if defined(Q_OS_WIN)

/// The most bytes of a file that Qt writes; less than 0 for no limit.
inline std::atomic<qint64> maxFileSize{-1};

/// Stands before Qt's WriteFile.
inline BOOL WINAPI writeWithinLimit(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written,
                                    LPOVERLAPPED overlapped)
{
    const qint64 limit = maxFileSize;
    LARGE_INTEGER position = {};
    if (limit < 0 || !SetFilePointerEx(file, {}, &position, FILE_CURRENT))
        return WriteFile(file, bytes, size, written, overlapped);
    const qint64 room = std::clamp<qint64>(limit - position.QuadPart, 0, size);
    if (size != 0 && room == 0) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return WriteFile(file, bytes, static_cast<DWORD>(room), written, overlapped);
}

#endif

/// While it lives no file that Qt writes in this process becomes longer than so many bytes, as on a disk that is full:
/// of a longer block the beginning is taken.
class RefusedWrite
{
public:
    static constexpr int limit = 30'000;

#if defined(Q_OS_WIN)
    explicit RefusedWrite(int bytes = limit)
    {
        const std::array<ImportReplacement, 1> ours = {{{"WriteFile", &writeWithinLimit}}};
        replaceImports(L"Qt5Core.dll", ours);
        maxFileSize = bytes;
    }

    ~RefusedWrite()
    {
        maxFileSize = -1;
    }
#else
    explicit RefusedWrite(int bytes = limit)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    ~RefusedWrite()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
#endif

    RefusedWrite(const RefusedWrite&) = delete;
    RefusedWrite& operator=(const RefusedWrite&) = delete;

private:
#if !defined(Q_OS_WIN)
    rlimit m_before = {};
    void (*m_handler)(int);
#endif
};

} // namespace zvtest
