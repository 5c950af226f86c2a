#pragma once

#include <zvutil/details/delete_later.h>
#include <zvutil/libzvutil/abstract_request.h>
#include <zvutil/zvutil_export.h>

#include <QObject>
#include <QThread>

#include <cstdint>
#include <deque>
#include <memory>

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
    request_ptr take_next();
    void pump();
    void remove_departed();
    void end_current();

    std::unique_ptr<QThread, details::delete_later> m_thread;
    // All below is touched on the worker thread only.
    std::deque<request_ptr> m_queue;
    request_ptr m_current;
    // How many requests of this thread have been seen to leave the pending state.
    std::uint64_t m_departures = 0;
    // Whether `run_next` handles events. Then it is not to be entered.
    bool m_pumping = false;
};

} // namespace zvutil::libzvutil
