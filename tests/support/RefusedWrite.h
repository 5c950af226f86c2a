#pragma once

#include <QFile>
#include <QString>
#include <QtGlobal>

#if defined(Q_OS_UNIX)
#include <csignal>
#include <sys/resource.h>
#endif

namespace zvtest {

/// While it lives no file of this process becomes longer than 30,000 bytes, as on a disk that is
/// full: of a longer block the beginning is taken. Where files can't be limited, the file of this
/// name can't be replaced.
class RefusedWrite
{
public:
    static constexpr int limit = 30'000;

#if defined(Q_OS_UNIX)
    explicit RefusedWrite(const QString& /*file*/)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &limited);
    }

    ~RefusedWrite()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
#else
    explicit RefusedWrite(const QString& file)
        : m_file(file)
    {
        m_file.open(QIODevice::ReadOnly);
    }
#endif

    RefusedWrite(const RefusedWrite&) = delete;
    RefusedWrite& operator=(const RefusedWrite&) = delete;

private:
#if defined(Q_OS_UNIX)
    rlimit m_before = {};
    void (*m_handler)(int);
#else
    QFile m_file;
#endif
};

} // namespace zvtest
