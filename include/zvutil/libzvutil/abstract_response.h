#pragma once

#include <zvutil/details/delete_later.h>
#include <zvutil/libzvutil/GenericTrigger.h>
#include <zvutil/libzvutil/request_status.h>
#include <zvutil/stop_token.h>
#include <zvutil/uuid.h>
#include <zvutil/zvutil_export.h>

#include <QObject>

#include <memory>
#include <string>

namespace zvutil::libzvutil {

class abstract_request;

/// The caller's side of a request that runs on another thread: it repeats the request's signals and
/// status on the caller's thread, and carries an abort back.
///
/// A response has no parent and belongs to its maker. Only connections link it to its request, so
/// either may be destroyed first; a request that still waits or runs goes on.
///
/// Call all operations on the response's own thread, which is the one that makes it, except for
/// `requestID`, which may be called on any. Signals of the request arrive through that thread's event
/// loop.
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT abstract_response : public QObject
{
    Q_OBJECT

public:
    /// Follows a request from now on. Make it on the thread on which the request lives, before the
    /// request is added to a manager: signals emitted before are lost, and a response that is made
    /// late reports `request_pending` until the next signal arrives.
    /// @param request isn't owned; if it is null, nothing ever arrives and the identifier is
    /// "unknown"
    explicit abstract_response(abstract_request* request);
    /// Ends the connections to the request, which goes on. Waits for a stop that is just being
    /// delivered by another thread.
    ~abstract_response() override;

    /// Calls `abort` when a stop is requested, on whatever thread; at once if it was already. The
    /// link lasts until the response is destroyed, and there may be any number of them. Another
    /// thread must not request the stop while this call runs.
    /// @param token of the source of the stop
    void attachStopToken(stop_token token);

    /// @return the request's identifier, or "unknown"; valid as long as the response.
    const uuid& requestID() const;

    /// @return the status by the last signal of the request that has arrived on this thread.
    request_status status() const;

    /// Handles this thread's events until the status is `request_completed` or `request_failed`,
    /// without sleeping and without a time limit: a request that never ends, for example because it
    /// waits for this thread, keeps it here for ever. `finished` may arrive later.
    virtual void wait();

Q_SIGNALS:
    /// The work has begun.
    void started();
    /// The work is done.
    void completed();
    /// The work has failed, was aborted before it started, or the request was destroyed before it
    /// ended.
    /// @param errorMessage the request's
    void failed(std::string errorMessage);
    /// The request has been destroyed.
    void finished();

public Q_SLOTS:
    /// Asks the request to abort, on its own thread.
    void abort();

private:
    std::unique_ptr<GenericTrigger, details::delete_later> m_trigger;
    request_status m_status = request_pending;
    uuid m_request_id;
};

static_assert(sizeof(abstract_response) == sizeof(QObject) + 2 * sizeof(void*) + sizeof(uuid));

} // namespace zvutil::libzvutil
