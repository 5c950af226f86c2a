#pragma once

#include <zvutil/libzvutil/request_status.h>
#include <zvutil/stop_source.h>
#include <zvutil/uuid.h>
#include <zvutil/zvutil_export.h>

#include <QObject>

#include <string>

namespace zvutil::libzvutil {

/// Work that runs once, on the thread that the request lives on. A subclass fills in `perform`.
/// `BackgroundRequestManager` runs requests, and shows a whole program at its class.
///
/// A request is held by `std::shared_ptr`: by its maker and, once it was handed to a manager, by
/// that. From then on it lives on the manager's worker thread. Whoever waits for it makes an
/// `abstract_response` of it before, and speaks to the request through that.
///
/// All operations are to be called on the request's own thread, but for `id` and `abort_requested`,
/// which may be called on any. From other threads the slots are reached by queued or automatic
/// connections. The last owner may let go on any thread, but on another than the request's own only
/// when the work isn't under way.
///
/// The signals come in this order, and the status has changed before any slot of theirs runs:
/// - `started`, then what the work emits, `completed` or `failed`;
/// - `failed` alone, "abort requested", if it is aborted before it was started;
/// - `aborted` between `started` and the end, each time it is aborted there;
/// - `failed`, if it is destroyed before it ended: "request terminated before starting" or "request
///   terminated before completing";
/// - `finished` from the destructor, always: the request goes, whether or not it ended.
///
/// **What the destructor emits comes when the subclass's part has been destroyed.** A subclass that
/// has connected these signals to itself is called on what is no more; so it connects another
/// object, or calls `disconnect(this, nullptr, this, nullptr)` in its own destructor.
class ZVUTIL_EXPORT abstract_request : public QObject
{
    Q_OBJECT

public:
    explicit abstract_request(QObject* parent = nullptr);
    ~abstract_request() override;

    /// Whether it was aborted after it was started. Work that takes long polls this and ends early
    /// when it turns true. It turns true only when `abort` runs, and an abort from another thread
    /// is an event: work that doesn't return to the event loop has to handle events, by
    /// `QCoreApplication::processEvents`, or the abort comes when it is done.
    bool abort_requested() const;

    bool has_failed() const;

    /// Made by the constructor; never changes.
    const uuid& id() const;

    bool is_pending() const;
    request_status status() const;

Q_SIGNALS:
    /// The work was asked to end early. It hasn't ended yet.
    void aborted();
    /// The work begins.
    void started();
    /// The work is done. For the subclass to emit.
    void completed();
    /// The work has failed. For the subclass to emit; the texts named above are the library's.
    void failed(std::string errorMessage);
    /// The request is being destroyed. Never for the subclass to emit.
    void finished();

public Q_SLOTS:
    /// Ends a request that is pending, asks one that is running to end early, and does nothing to
    /// one that has ended.
    virtual void abort();

    /// Does the work, if the request is pending; else nothing. So a request runs at most once.
    void start();

protected:
    /// Does the work and emits exactly one of `completed` and `failed`, at once or, having
    /// returned, from the event loop later on. A request that emits neither is never done, and its
    /// manager starts no other; one that emits both has its manager take the next request for done,
    /// too.
    ///
    /// Must not throw. What it throws comes out of `start`, and from there, on a manager's worker
    /// thread, gets into Qt's event loop, which ends the program by `std::terminate`. Where the
    /// application's `QCoreApplication::notify` catches it, the request counts as running still,
    /// until it is destroyed.
    virtual void perform() = 0;

private:
    uuid m_id;
    request_status m_status = request_pending;
    stop_source m_stop;
};

static_assert(sizeof(abstract_request)
              == sizeof(QObject) + sizeof(uuid) + sizeof(void*) + sizeof(stop_source));

} // namespace zvutil::libzvutil
