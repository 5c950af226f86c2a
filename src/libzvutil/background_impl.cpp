#include <zvutil/libzvutil/background_impl.h>

#include "impl/background/handle_events.h"
#include "impl/background/pending_exit_count.h"

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
    m_isEnding = true;
    m_current.reset();
    while (!m_queue.empty()) {
        const request_ptr last = std::move(m_queue.back());
        m_queue.pop_back();
    }
    // By contract: nobody ends the thread or waits for it.
}

void background_impl::add(request_ptr request)
{
    if (!request)
        return;
    // Only one that lives there already can have been added before.
    [[maybe_unused]] const bool mayBeQueued = request->thread() == m_thread.get();
    request->setParent(nullptr);
    request->moveToThread(m_thread.get());
#ifndef __clang_analyzer__ // It doesn't see that Qt keeps the functor.
    QMetaObject::invokeMethod(this, [this, request = std::move(request), mayBeQueued]() mutable {
        push(std::move(request), mayBeQueued);
        // GLib's event loop, entered from a slot that adds a request, passes over what was posted before,
        // so that a slot that then waits needs a call that is posted anew.
        if (mayBeQueued)
            m_awaited = 0;
        run_next();
    });
#endif
}

void background_impl::push(request_ptr&& request, bool mayBeQueued)
{
    // A request that isn't pending any more has left that state on another thread, uncounted.
    if (!request->is_pending())
        --m_departures;
    if (mayBeQueued && !m_isIndexed) {
        for (const request_ptr& queued : m_queue)
            m_entries.insert(queued.get());
        m_isIndexed = true;
    }
    if (m_isIndexed)
        m_entries.insert(request.get());
    m_queue.push_back(std::move(request));
}

void background_impl::run_next()
{
    if (m_isEnding)
        return;
    if (m_pump == 0)
        start_next();
    else
        run_next_in_a_deeper_loop();
}

/// The pump's caller goes on to choose, so a call that the pump delivers has nothing to do; if it went on,
/// calls would nest, one for each request that arrives. But a slot that the pump has called may wait
/// for a request in an event loop of its own, and only a call from that loop can start the request. The
/// pump doesn't deliver what is posted meanwhile. So what is posted here and comes while the pump is
/// still at work comes from such a loop.
void background_impl::run_next_in_a_deeper_loop()
{
    if (m_awaited == m_pump)
        return;
    m_awaited = m_pump;
#ifndef __clang_analyzer__ // As above.
    const auto runNext = [this, pump = m_pump] {
        if (m_awaited == pump)
            m_awaited = 0;
        if (m_pump == pump && !m_isEnding)
            start_next();
    };
    QMetaObject::invokeMethod(this, runNext, Qt::QueuedConnection);
#endif
}

void background_impl::start_next()
{
    const request_ptr request = take_next();
    if (!request)
        return;
    m_current = request;
    // Queued, since work may end while it is still on the stack.
    connect(request.get(), &abstract_request::completed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    connect(request.get(), &abstract_request::failed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    // The start of a request that is in the queue once more has to be seen, or that entry would stay.
    if (m_entries.count(request.get()) == 0)
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
        forget_entry(request.get());
        // What was released may have aborted others.
        if (request->is_pending())
            return request;
    }
    return nullptr;
}

void background_impl::pump()
{
    const QPointer<background_impl> self(this);
    const auto done = qScopeGuard([&self, outer = m_pump] {
        if (self)
            self->m_pump = outer;
    });
    m_pump = ++m_lastPump;
    impl::notice_waiting_events();
    impl::handle_events();
}

void background_impl::remove_departed()
{
    if (m_departures == impl::pending_exit_count())
        return;
    m_departures = impl::pending_exit_count();
    const auto departed =
        std::stable_partition(m_queue.begin(), m_queue.end(),
                              [](const request_ptr& request) { return request->is_pending(); });
    // Released behind the last look at the queue, since that may run anything.
    const std::vector<request_ptr> released(std::make_move_iterator(departed),
                                            std::make_move_iterator(m_queue.end()));
    m_queue.erase(departed, m_queue.end());
    for (const request_ptr& request : released)
        forget_entry(request.get());
}

void background_impl::forget_entry(const abstract_request* request)
{
    const auto entry = m_entries.find(request);
    if (entry != m_entries.end())
        m_entries.erase(entry);
    m_isIndexed = m_isIndexed && !m_queue.empty();
}

void background_impl::end_current()
{
    const QPointer<background_impl> self(this);
    m_current.reset();
    if (self)
        run_next();
}

} // namespace zvutil::libzvutil
