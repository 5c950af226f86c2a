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

using request_ptr = std::shared_ptr<abstract_request>;

/// What runs requests behind a `BackgroundRequestManager`, which see. It lives on the worker thread
/// that it makes; the `QThread` lives on the thread that makes it.
class ZVUTIL_EXPORT background_impl : public QObject
{
    Q_OBJECT

public:
    background_impl();
    /// To be reached by `deleteLater` only.
    ~background_impl() override;

public Q_SLOTS:
    /// On the thread on which \p request lives.
    void add(request_ptr request);

private Q_SLOTS:
    void run_next();

private:
    void push(request_ptr&& request, bool mayBeQueued);
    void run_next_in_a_deeper_loop();
    void start_next();
    request_ptr take_next();
    void pump();
    void remove_departed();
    void forget_entry(const abstract_request* request);
    void end_current();

    std::unique_ptr<QThread, details::delete_later> m_thread;
    // All below is touched on the worker thread only.
    std::deque<request_ptr> m_queue;
    request_ptr m_current;
    // How many requests of this thread have been seen to leave the pending state.
    std::uint64_t m_departures = 0;
    // The entries of the queue, kept once a request has been added that may be in it already.
    std::unordered_multiset<const abstract_request*> m_entries;
    bool m_isIndexed = false;
    // The pump that is at work, or 0. Each has a number of its own.
    std::uint64_t m_pump = 0;
    std::uint64_t m_lastPump = 0;
    // The pump for which a call from a deeper loop is on its way.
    std::uint64_t m_awaited = 0;
    bool m_isEnding = false;
};

} // namespace zvutil::libzvutil
