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
/// It has no parent and belongs to whoever made it. It knows its request by connections alone, so
/// either may be destroyed first; a request that is still waiting or running then goes on.
///
/// All operations are to be called on the response's own thread, which is the one that makes it,
/// but for `requestID`, which may be called on any. All that arrives here comes by way of that
/// thread's event loop.
class ZVUTIL_EXPORT abstract_response : public QObject
{
    Q_OBJECT

public:
    /// Follows \p request from now on. Make it on the thread on which the request lives, before the
    /// request is handed to a manager: what was emitted before is lost, and a response that is made
    /// late says `request_pending` until the next signal arrives. \p request may be null; then
    /// nothing ever arrives and the identifier is "unknown".
    explicit abstract_response(abstract_request* request);
    ~abstract_response() override;

    /// Has `abort` called when the source of \p token is asked to stop, on whatever thread; at once
    /// if it was already. It lasts until the response is destroyed, and can be done for any number
    /// of tokens. The source must not be asked to stop by another thread while this call runs.
    void attachStopToken(stop_token token);

    const uuid& requestID() const;

    /// As far as the request's signals have arrived here.
    request_status status() const;

    /// Handles this thread's events until the status is `request_completed` or `request_failed`.
    /// Without sleeping and without a limit: for ever if the request never ends, and it doesn't
    /// if it waits for this thread. `finished` may come later.
    virtual void wait();

Q_SIGNALS:
    void started();
    void completed();
    void failed(std::string errorMessage);
    /// The request has been destroyed.
    void finished();

public Q_SLOTS:
    /// Asks the request to abort, on its own thread.
    void abort();

private:
    std::unique_ptr<GenericTrigger, details::delete_later> m_trigger;
    request_status m_status = request_pending;
    uuid m_requestID;
};

static_assert(sizeof(abstract_response) == sizeof(QObject) + 2 * sizeof(void*) + sizeof(uuid));

} // namespace zvutil::libzvutil
