#pragma once

#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_request.h>
#include <zvutil/libzvutil/abstract_response.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace zvtest {

using Lines = std::vector<std::string>;

/// What happened, in order, written from any thread.
class Journal
{
public:
    void write(std::string line)
    {
        const std::lock_guard lock(m_mutex);
        m_lines.push_back(std::move(line));
    }

    Lines lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

    std::size_t size() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines.size();
    }

private:
    mutable std::mutex m_mutex;
    Lines m_lines;
};

inline std::string nameOf(zvutil::libzvutil::request_status status)
{
    const char* const names[] = {"pending", "started", "completed", "failed"};
    return names[status];
}

/// Has \p journal record the signals that requests and responses have in common, each with a remark if
/// its slot sees another status than the signal means, or is called on another thread than that of
/// \p subject.
template <typename Subject>
void record(Subject& subject, Journal& journal, const std::string& name = {})
{
    using namespace zvutil::libzvutil;
    // By direct connections, so that the order is that of the emissions.
    const auto write = [&subject, &journal, name](const std::string& what, request_status meant) {
        std::string line = name + what;
        if (subject.status() != meant)
            line += " while " + nameOf(subject.status());
        if (QThread::currentThread() != subject.thread())
            line += " elsewhere";
        journal.write(line);
    };
    QObject::connect(&subject, &Subject::started, [write] { write("started", request_started); });
    QObject::connect(&subject, &Subject::completed,
                     [write] { write("completed", request_completed); });
    QObject::connect(&subject, &Subject::failed, [write](const std::string& message) {
        write("failed: " + message, request_failed);
    });
    QObject::connect(&subject, &Subject::finished, [write, &subject] {
        const request_status status = subject.status();
        write("finished as " + nameOf(status), status);
    });
    if constexpr (std::is_base_of_v<abstract_request, Subject>)
        QObject::connect(&subject, &Subject::aborted,
                         [write] { write("aborted", request_started); });
}

/// A request that does what it is told.
class Request : public zvutil::libzvutil::abstract_request
{
public:
    using Work = std::function<void(Request&)>;

    explicit Request(Work work = &complete, QObject* parent = nullptr)
        : abstract_request(parent)
        , m_work(std::move(work))
    {
    }

    static void complete(Request& request) { Q_EMIT request.completed(); }

protected:
    void perform() override { m_work(*this); }

private:
    Work m_work;
};

/// Runs \p work on the thread of \p context and waits for it.
template <typename Work>
void runOn(QObject& context, Work work)
{
    const bool same = context.thread() == QThread::currentThread();
    QMetaObject::invokeMethod(&context, work,
                              same ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
}

/// Ends a thread's event loop. On Unix a quit is lost if the loop is just handling an event that
/// itself handles events.
inline void endThread(QThread& thread)
{
    do
        thread.quit();
    while (!thread.wait(20));
}

/// A thread with an event loop.
class Worker
{
public:
    Worker()
    {
        m_context.moveToThread(&m_thread);
        m_thread.start();
    }

    ~Worker() { endThread(m_thread); }

    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    template <typename Work>
    void run(Work work)
    {
        runOn(m_context, work);
    }

    /// Has the thread run \p work when it comes to it.
    template <typename Work>
    void post(Work work)
    {
        QMetaObject::invokeMethod(&m_context, work, Qt::QueuedConnection);
    }

    /// Waits until the thread has handled what was sent to it.
    void deliverPending()
    {
        run([] {});
    }

    QThread* thread() { return &m_thread; }

private:
    QThread m_thread;
    QObject m_context;
};

/// A manager, and an object on its worker thread. Both end with their thread, as they have to where
/// the event loop goes on afterwards.
class ManagerWithWorker
{
public:
    ManagerWithWorker()
    {
        auto probe = std::make_shared<Request>();
        zvutil::libzvutil::abstract_response response(probe.get());
        m_manager->add(probe);
        m_thread = probe->thread();
        probe.reset();
        response.wait();
        m_context.moveToThread(m_thread);
        deliverPending();
    }

    ~ManagerWithWorker() { end(); }

    ManagerWithWorker(const ManagerWithWorker&) = delete;
    ManagerWithWorker& operator=(const ManagerWithWorker&) = delete;

    zvutil::libzvutil::BackgroundRequestManager& manager() { return *m_manager; }
    QThread* thread() { return m_thread; }
    QObject& context() { return m_context; }

    void add(std::shared_ptr<Request> request) { m_manager->add(std::move(request)); }

    /// Waits until the worker has handled what was sent to it. That may be while it handles events
    /// before it starts the next request, so what is to come is to be waited for before.
    void deliverPending()
    {
        for (int i = 0; i < 4; ++i)
            runOn(m_context, [] {});
    }

    /// Destroys the manager and leaves the thread running.
    void destroyManager() { m_manager.reset(); }

    /// Destroys the manager, if it is there yet, and ends the thread.
    void end()
    {
        if (!m_thread)
            return;
        m_manager.reset();
        endThread(*std::exchange(m_thread, nullptr));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    std::unique_ptr<zvutil::libzvutil::BackgroundRequestManager> m_manager =
        std::make_unique<zvutil::libzvutil::BackgroundRequestManager>();
    QThread* m_thread = nullptr;
    QObject m_context;
};

} // namespace zvtest
