#pragma once

#include <zvutil/libzvutil/basic_request_manager.h>
#include <zvutil/zvutil_export.h>

namespace zvutil::libzvutil {

/// Runs requests one at a time on a worker thread of its own, in the order in which they were
/// added.
///
/// The next request starts when the one before it has emitted `completed` or `failed`; a request
/// that never does blocks all later ones. A request that is aborted while it waits is dropped
/// without being started. A request that is added by a slot or by work on the worker thread itself
/// is queued like any other. So work must not wait for another request of the same manager, which
/// would never start. A slot on the worker thread that no work has called may wait: meanwhile the
/// manager starts requests from the slot's event loop, and slots that wait lie on each other's
/// stack. Such a slot calls `abstract_response::wait`, since an event loop of its own may, on
/// Linux, pass over events that were posted before the slot was called.
///
/// `add` may be called on any thread, but must be called on the one on which the request lives,
/// since the call moves the request to the worker thread and takes it from its parent. `add` never
/// waits. Make the request's `abstract_response` before.
///
/// **A manager has to live as long as the event loop of the thread that made it.** Its destructor
/// returns at once. Later the worker's event loop releases the requests that are left, the running
/// one first and then the others from the last added to the first; a request without another owner
/// is destroyed there. The worker thread itself is not ended, and its `QThread` object is deleted
/// by the event loop of the thread that made the manager: if that loop still runs, Qt ends the
/// program, since the worker runs. A program that has to destroy a manager earlier ends the worker
/// itself right after, as the program below does at its end. A request's `thread` is the only way
/// to the worker; a program that may have to end the worker of an unused manager adds a request
/// that completes at once, before it destroys the manager.
///
/// @code{.cpp}
/// #include <zvutil/libzvutil/BackgroundRequestManager.h>
/// #include <zvutil/libzvutil/abstract_response.h>
///
/// #include <QCoreApplication>
/// #include <QFile>
/// #include <QThread>
///
/// #include <cstdio>
///
/// class CountLines : public zvutil::libzvutil::abstract_request
/// {
/// public:
///     explicit CountLines(const QString& name)
///         : m_name(name)
///     {
///     }
///     int lines = 0; ///< valid once `completed` has been received
///
/// protected:
///     void perform() override // on the worker thread
///     {
///         QFile file(m_name);
///         if (!file.open(QIODevice::ReadOnly)) {
///             Q_EMIT failed(file.errorString().toStdString());
///             return;
///         }
///         lines = file.readAll().count('\n');
///         Q_EMIT completed();
///     }
///
/// private:
///     QString m_name;
/// };
///
/// int main(int argc, char* argv[])
/// {
///     using namespace zvutil::libzvutil;
///     QCoreApplication application(argc, argv);
///     const auto request = std::make_shared<CountLines>(application.arguments().value(1));
///     abstract_response response(request.get()); // before `add`
///     QObject::connect(&response, &abstract_response::completed, [&request] {
///         std::printf("%d lines\n", request->lines);
///         QCoreApplication::exit(0);
///     });
///     QObject::connect(&response, &abstract_response::failed, [](const std::string& message) {
///         std::printf("failed: %s\n", message.c_str());
///         QCoreApplication::exit(1);
///     });
///     auto manager = std::make_unique<BackgroundRequestManager>();
///     manager->add(request);
///     const int status = application.exec();
///
///     QThread* const worker = request->thread();
///     manager.reset();
///     do
///         worker->quit(); // again, since work that handles events may swallow it
///     while (!worker->wait(100));
///     return status;
/// }
/// @endcode
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT BackgroundRequestManager : public basic_request_manager<background_impl>
{
public:
    /// Starts the worker thread, with the priority of this one.
    /// @param parent owns the manager; may be null
    explicit BackgroundRequestManager(QObject* parent = nullptr);
    /// Returns at once; the worker releases the requests that are left when its event loop gets to
    /// that.
    ~BackgroundRequestManager() override;
};

static_assert(sizeof(BackgroundRequestManager) == sizeof(QObject) + sizeof(void*));

} // namespace zvutil::libzvutil
