#pragma once

#include <zvutil/libzvutil/request_status.h>
#include <zvutil/stop_source.h>
#include <zvutil/uuid.h>
#include <zvutil/zvutil_export.h>

#include <QObject>

#include <string>

namespace zvutil::libzvutil {

/// Work that runs once, on the thread that the request lives on. A subclass implements `perform`.
/// `BackgroundRequestManager` runs requests, and shows a whole program at its class.
///
/// A request is owned by `std::shared_ptr`: its maker's and, once it was added to a manager, the
/// manager's. From then on it lives on the manager's worker thread. A caller that waits for it makes
/// an `abstract_response` of it before, and uses the request through that.
///
/// Call all operations on the request's own thread, except for `id` and `abort_requested`, which may
/// be called on any. From other threads use queued or automatic connections to the slots. The last
/// owner may release the request on any thread, but on another than the request's own only when the
/// work isn't under way.
///
/// The signals come in this order, and the status has changed before any slot of theirs runs:
/// - `started`, then what the work emits, `completed` or `failed`;
/// - `failed` alone, "abort requested", if it is aborted before it was started;
/// - `aborted` between `started` and the end, each time it is aborted there;
/// - `failed`, if it is destroyed before it ended: "request terminated before starting" or "request
///   terminated before completing";
/// - `finished` from the destructor, always, whether or not the request ended.
///
/// **The destructor emits after the subclass's part was destroyed.** A slot of the subclass itself
/// would run on a destroyed object; so connect another object, or call
/// `disconnect(this, nullptr, this, nullptr)` in the subclass's destructor.
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT abstract_request : public QObject
{
    Q_OBJECT

public:
    /// A pending request with a new identifier.
    /// @param parent owns the request only if no `std::shared_ptr` does; may be null
    explicit abstract_request(QObject* parent = nullptr);
    /// Emits `failed` if the request hasn't ended, and then `finished`; see above.
    ~abstract_request() override;

    /// @return whether the request was aborted after it was started. Long work polls this and ends
    /// early once it is true. Only `abort` sets it, and an abort from another thread is an event:
    /// work that doesn't return to the event loop has to handle events, by
    /// `QCoreApplication::processEvents`, or the abort arrives when the work is done.
    bool abort_requested() const;

    /// @return whether the status is `request_failed`.
    bool has_failed() const;

    /// @return the identifier that the constructor generates; never changes. Valid as long as the
    /// request.
    const uuid& id() const;

    /// @return whether the status is `request_pending`.
    bool is_pending() const;
    /// @return how far the request is, by the last of its signals.
    request_status status() const;

Q_SIGNALS:
    /// `abort` was called while the work is under way; the work hasn't ended yet.
    void aborted();
    /// The work begins.
    void started();
    /// The work is done. The subclass emits it.
    void completed();
    /// The work has failed. The subclass emits it; the library itself emits the texts named above.
    /// @param errorMessage why
    void failed(std::string errorMessage);
    /// The request is being destroyed. The subclass never emits it.
    void finished();

public Q_SLOTS:
    /// Fails a request that is pending, asks one that is running to end early, and ignores one that
    /// has ended.
    virtual void abort();

    /// Emits `started` and calls `perform` if the request is pending, else does nothing. So a request
    /// runs at most once.
    void start();

protected:
    /// Does the work and emits exactly one of `completed` and `failed`, either before it returns or
    /// from the event loop later. A request that emits neither never ends, and its manager starts no
    /// other; after one that emits both the manager also regards the next request as ended.
    ///
    /// Must not throw. An exception leaves `start` and, on a manager's worker thread, reaches Qt's
    /// event loop, which ends the program by `std::terminate`. Where the application's
    /// `QCoreApplication::notify` catches it, the request stays in the state `request_started` until
    /// it is destroyed.
    virtual void perform() = 0;

private:
    uuid m_id;
    request_status m_status = request_pending;
    stop_source m_stop;
};

static_assert(sizeof(abstract_request)
              == sizeof(QObject) + sizeof(uuid) + sizeof(void*) + sizeof(stop_source));

} // namespace zvutil::libzvutil
