#pragma once

#include <zvutil/details/delete_later.h>
#include <zvutil/libzvutil/abstract_request.h>
#include <zvutil/zvutil_export.h>

#include <QObject>
#include <QThread>

#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_set>

namespace zvutil::libzvutil {

/// Shared ownership of a request.
/// @since 0.1 @ingroup background
using request_ptr = std::shared_ptr<abstract_request>;

/// Runs the requests of a `BackgroundRequestManager`; lives on the worker thread that it creates. The
/// `QThread` object lives on the thread that calls the constructor.
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT background_impl : public QObject
{
    Q_OBJECT

public:
    /// Starts the worker thread and moves this object there.
    background_impl();
    /// Releases the requests; called by `deleteLater` only.
    ~background_impl() override;

public Q_SLOTS:
    /// Queues a request, on the thread on which it lives.
    /// @param request null is ignored
    void add(request_ptr request);

private Q_SLOTS:
    void run_next();

private:
    void push(request_ptr&& request, bool may_be_queued);
    void run_next_in_a_deeper_loop();
    void start_next();
    request_ptr take_next();
    void pump();
    void remove_departed();
    void forget_entry(const abstract_request* request);
    void end_current();

    std::unique_ptr<QThread, details::delete_later> m_thread;
    // Only the worker thread uses the members below.
    std::deque<request_ptr> m_queue;
    request_ptr m_current;
    // The number of requests of this thread that have left the pending state, when last looked at.
    std::uint64_t m_pending_exits = 0;
    // The entries of the queue; filled once a request is added that may be in the queue already.
    std::unordered_multiset<const abstract_request*> m_entries;
    bool m_is_indexed = false;
    // The number of the pump or release that is at work, or 0; each has its own number.
    std::uint64_t m_pump = 0;
    std::uint64_t m_last_pump = 0;
    // The number of that for which a call from a deeper loop is posted.
    std::uint64_t m_awaited = 0;
    bool m_is_ending = false;
    // Whether the next round of the event loop is the pump's own.
    bool m_is_pump_entering = false;
};

} // namespace zvutil::libzvutil
