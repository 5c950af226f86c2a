#include <zvutil/libzvutil/background_impl.h>

#include "impl/departures.h"
#include "impl/handle_events.h"

#include <QPointer>
#include <QScopeGuard>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace zvutil::libzvutil {

background_impl::background_impl()
    : m_thread(new QThread)
{
    moveToThread(m_thread.get());
    m_thread->start(QThread::InheritPriority);
}

background_impl::~background_impl()
{
    // Slots of what is released may handle events, and these must find nothing to start.
    m_pumping = true;
    m_current.reset();
    while (!m_queue.empty()) {
        const request_ptr last = std::move(m_queue.back());
        m_queue.pop_back();
    }
    // Wanted: the thread is neither ended nor waited for.
}

void background_impl::add(request_ptr request)
{
    if (!request)
        return;
    request->setParent(nullptr);
    request->moveToThread(m_thread.get());
#ifndef __clang_analyzer__ // It doesn't see that Qt keeps the functor.
    QMetaObject::invokeMethod(this, [this, request = std::move(request)]() mutable {
        // One that isn't pending any more has left that state on another thread, uncounted.
        if (!request->is_pending())
            --m_departures;
        m_queue.push_back(std::move(request));
        run_next();
    });
#endif
}

void background_impl::run_next()
{
    // The call that handles events goes on to choose. One that comes from such an event would only
    // handle the rest of them, one call inside the other for each request that arrives.
    if (m_pumping)
        return;
    const request_ptr request = take_next();
    if (!request)
        return;
    m_current = request;
    // Queued, since work may end while it is still on the stack.
    connect(request.get(), &abstract_request::completed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    connect(request.get(), &abstract_request::failed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    ++m_departures;
    // Work that handles events may see this object deleted; the request is held here as well.
    request->start();
}

request_ptr background_impl::take_next()
{
    const QPointer<background_impl> self(this);
    while (self) {
        pump();
        if (!self || m_current)
            return nullptr;
        remove_departed();
        if (!self || m_current || m_queue.empty())
            return nullptr;
        request_ptr request = std::move(m_queue.front());
        m_queue.pop_front();
        // What was released may have aborted others.
        if (request->is_pending())
            return request;
    }
    return nullptr;
}

void background_impl::pump()
{
    const QPointer<background_impl> self(this);
    const auto done = qScopeGuard([&self] {
        if (self)
            self->m_pumping = false;
    });
    m_pumping = true;
    impl::handle_events();
}

void background_impl::remove_departed()
{
    if (m_departures == impl::departures())
        return;
    m_departures = impl::departures();
    const auto departed =
        std::stable_partition(m_queue.begin(), m_queue.end(),
                              [](const request_ptr& request) { return request->is_pending(); });
    // Released behind the last look at the queue, since that may run anything.
    const std::vector<request_ptr> released(std::make_move_iterator(departed),
                                            std::make_move_iterator(m_queue.end()));
    m_queue.erase(departed, m_queue.end());
}

void background_impl::end_current()
{
    const QPointer<background_impl> self(this);
    m_current.reset();
    if (self)
        run_next();
}

} // namespace zvutil::libzvutil
