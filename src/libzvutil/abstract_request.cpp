#include <zvutil/libzvutil/abstract_request.h>

#include "impl/background/pending_exit_count.h"
#include "impl/background/string_metatype.h"

#include <QThread>

#include <utility>

namespace zvutil::libzvutil {

namespace {

/// The request that this thread is destroying, or null.
thread_local const abstract_request* destroyed_here = nullptr;

} // namespace

abstract_request::abstract_request(QObject* parent)
    : QObject(parent)
{
    impl::register_string_metatype();
    // Connect first, so that every other slot sees the new status.
    const auto status_setter = [this](request_status status) {
        return [this, status] {
            // The destructor sets it: on another thread, where the last owner may release the
            // request, a call would be posted to an object that is being destroyed.
            if (destroyed_here == this)
                return;
            const auto set = [this, status] {
                if (m_status == request_pending)
                    ++impl::pending_exit_count();
                m_status = status;
            };
            if (QThread::currentThread() == thread())
                set();
            else
                QMetaObject::invokeMethod(this, set, Qt::QueuedConnection);
        };
    };
    connect(this, &abstract_request::started, this, status_setter(request_started),
            Qt::DirectConnection);
    connect(this, &abstract_request::completed, this, status_setter(request_completed),
            Qt::DirectConnection);
    connect(this, &abstract_request::failed, this, status_setter(request_failed),
            Qt::DirectConnection);
}

abstract_request::~abstract_request()
{
    const abstract_request* const outer = std::exchange(destroyed_here, this);
    const request_status left = m_status;
    if (left == request_pending || left == request_started)
        m_status = request_failed;
    if (left == request_pending)
        Q_EMIT failed("request terminated before starting");
    else if (left == request_started)
        Q_EMIT failed("request terminated before completing");
    Q_EMIT finished();
    destroyed_here = outer;
}

bool abstract_request::abort_requested() const
{
    return m_stop.stop_requested();
}

bool abstract_request::has_failed() const
{
    return m_status == request_failed;
}

const uuid& abstract_request::id() const
{
    return m_id;
}

bool abstract_request::is_pending() const
{
    return m_status == request_pending;
}

request_status abstract_request::status() const
{
    return m_status;
}

void abstract_request::abort()
{
    if (m_status == request_pending) {
        // By contract: abort() of a pending request doesn't emit aborted(), since no work was under
        // way.
        Q_EMIT failed("abort requested");
    } else if (m_status == request_started) {
        m_stop.request_stop();
        // By contract: each further abort() of a running request emits aborted() again. An abort is
        // a request to the work, which may ignore it.
        Q_EMIT aborted();
    }
}

void abstract_request::start()
{
    if (m_status != request_pending)
        return;
    Q_EMIT started();
    perform();
}

} // namespace zvutil::libzvutil
