#include <zvutil/libzvutil/background_impl.h>

#include "impl/background/handle_events.h"
#include "impl/background/pending_exit_count.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace zvutil::libzvutil {

namespace {

/// A time in which the manager runs slots of others and chooses a request afterwards; see
/// run_next_in_a_deeper_loop(). Sections nest, each with its own number.
class section
{
public:
    section(background_impl* impl, std::uint64_t& current, std::uint64_t& last)
        : m_impl(impl)
        , m_current(current)
        , m_outer(std::exchange(current, ++last))
    {
    }

    ~section()
    {
        if (m_impl)
            m_current = m_outer;
    }

    section(const section&) = delete;
    section& operator=(const section&) = delete;

private:
    const QPointer<background_impl> m_impl;
    std::uint64_t& m_current;
    const std::uint64_t m_outer;
};

} // namespace

background_impl::background_impl()
    : m_thread(new QThread)
{
    moveToThread(m_thread.get());
    // A slot that is called by the pump or by a release may wait for a request that is in the queue
    // already, for which nothing arrives any more; so look at each round of a loop of its own.
    const auto look = [this] {
        if (m_pump == 0 || std::exchange(m_is_pump_entering, false))
            return;
        if (!m_current && !m_queue.empty() && !m_is_ending)
            run_next_in_a_deeper_loop();
    };
    const auto look_at_loops = [this, look] {
        QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, look);
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, look);
    };
    connect(m_thread.get(), &QThread::started, this, look_at_loops, Qt::DirectConnection);
    m_thread->start(QThread::InheritPriority);
}

background_impl::~background_impl()
{
    // Mark the end first: slots of released requests may handle events, which must not start
    // another request.
    m_is_ending = true;
    m_current.reset();
    while (!m_queue.empty()) {
        const request_ptr last = std::move(m_queue.back());
        m_queue.pop_back();
    }
    // By contract: the destructor neither ends the thread nor waits for it, since work may take any
    // time.
}

void background_impl::add(request_ptr request)
{
    if (!request)
        return;
    // Only a request that lives on the worker thread already can be in the queue already.
    const bool may_be_queued = request->thread() == m_thread.get();
    request->setParent(nullptr);
    request->moveToThread(m_thread.get());
    QMetaObject::invokeMethod(this, [this, request = std::move(request), may_be_queued]() mutable {
        push(std::move(request), may_be_queued);
        // Forget the posted call: GLib's event loop, entered from a slot that adds a request, skips
        // calls that were posted before, so a slot that then waits needs a new one.
        if (may_be_queued)
            m_awaited = 0;
        run_next();
    });
}

void background_impl::push(request_ptr&& request, bool may_be_queued)
{
    // Make remove_departed() search the queue: this request left the pending state on another
    // thread, which this thread's count doesn't include.
    if (!request->is_pending())
        --m_pending_exits;
    if (may_be_queued && !m_is_indexed) {
        for (const request_ptr& queued : m_queue)
            m_entries.insert(queued.get());
        m_is_indexed = true;
    }
    if (m_is_indexed)
        m_entries.insert(request.get());
    m_queue.push_back(std::move(request));
}

void background_impl::run_next()
{
    if (m_is_ending)
        return;
    if (m_pump == 0)
        start_next();
    else
        run_next_in_a_deeper_loop();
}

/// Posts a call that starts the next request only if a slot waits in an event loop of its own.
///
/// The caller of pump(), or who releases a request, chooses a request afterwards, so a call that is
/// delivered by the pump itself has nothing to do; if it started one, calls would nest, one for each
/// request that arrives. But a slot that is called meanwhile may wait for a request in its own event
/// loop, and only a call from that loop can start the request. The pump doesn't deliver calls that
/// are posted while it works, and a release delivers none. So a call that is posted here and
/// delivered while the pump or the release still works comes from such a loop.
void background_impl::run_next_in_a_deeper_loop()
{
    if (m_awaited == m_pump)
        return;
    m_awaited = m_pump;
    const auto run_deeper = [this, pump = m_pump] {
        if (m_awaited == pump)
            m_awaited = 0;
        if (m_pump == pump && !m_is_ending)
            start_next();
    };
    QMetaObject::invokeMethod(this, run_deeper, Qt::QueuedConnection);
}

void background_impl::start_next()
{
    const request_ptr request = take_next();
    if (!request)
        return;
    m_current = request;
    // Queue the end, since work may emit it while it is still on the stack.
    connect(request.get(), &abstract_request::completed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    connect(request.get(), &abstract_request::failed, this, &background_impl::end_current,
            Qt::QueuedConnection);
    // Count the start of this request as seen, unless the request is in the queue once more:
    // remove_departed() has to remove that entry.
    if (m_entries.count(request.get()) == 0)
        ++m_pending_exits;
    // Hold the request here: work that handles events may cause the deletion of this object.
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
        // Check again: slots of released requests may have aborted this one.
        if (request->is_pending())
            return request;
        const section releasing(this, m_pump, m_last_pump);
        request.reset();
    }
    return nullptr;
}

void background_impl::pump()
{
    const section working(this, m_pump, m_last_pump);
    m_is_pump_entering = true;
    impl::notice_waiting_events();
    impl::handle_events();
}

void background_impl::remove_departed()
{
    if (m_pending_exits == impl::pending_exit_count())
        return;
    m_pending_exits = impl::pending_exit_count();
    const auto departed =
        std::stable_partition(m_queue.begin(), m_queue.end(),
                              [](const request_ptr& request) { return request->is_pending(); });
    const section releasing(this, m_pump, m_last_pump);
    // Release the requests after the last access to the queue, since that may run any slot.
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
    m_is_indexed = m_is_indexed && !m_queue.empty();
}

void background_impl::end_current()
{
    const QPointer<background_impl> self(this);
    {
        const section releasing(this, m_pump, m_last_pump);
        m_current.reset();
    }
    if (self)
        run_next();
}

} // namespace zvutil::libzvutil
