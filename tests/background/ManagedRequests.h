#pragma once

#include "support/Background.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTest>

#include <memory>
#include <string>
#include <utility>

namespace zvtest {

inline void leaveOpen(Request& /*request*/)
{
}

/// A request that writes its signals to \p journal.
inline std::shared_ptr<Request> recorded(Journal& journal, const std::string& name,
                                         Request::Work work = &Request::complete)
{
    auto request = std::make_shared<Request>(std::move(work));
    record(*request, journal, name + ' ');
    return request;
}

/// Handles the events of this thread until \p journal has \p count lines.
inline void waitForLines(const Journal& journal, std::size_t count)
{
    while (journal.size() < count) {
        QCoreApplication::processEvents();
        QThread::yieldCurrentThread();
    }
}

/// The worker handles events before it starts a request, so what is sent to it may come first.
inline void waitUntilStarted(ManagerWithWorker& managed, const Request& request)
{
    bool isStarted = false;
    while (!isStarted)
        runOn(managed.context(), [&] { isStarted = !request.is_pending(); });
}

/// Keeps a worker from handling events, so that several can be made to wait for it.
class Gate
{
public:
    explicit Gate(ManagerWithWorker& managed)
    {
        QMetaObject::invokeMethod(&managed.context(), [this] {
            m_closed.release();
            m_open.acquire();
        });
        m_closed.acquire();
    }

    void open() { m_open.release(); }

private:
    QSemaphore m_closed;
    QSemaphore m_open;
};

/// Work that ends when it is told to, and handles no events until then.
class BlockingWork
{
public:
    Request::Work work()
    {
        return [this](Request& request) {
            m_started.release();
            m_mayEnd.acquire();
            Q_EMIT request.completed();
        };
    }

    void waitUntilStarted() { m_started.acquire(); }
    void end() { m_mayEnd.release(); }

private:
    QSemaphore m_started;
    QSemaphore m_mayEnd;
};

} // namespace zvtest
