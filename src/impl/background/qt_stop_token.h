#pragma once

#include <zvutil/signalling/parameterised_abstract_receiver.h>
#include <zvutil/stop_token.h>

#include <QObject>

#include <atomic>
#include <memory>

namespace zvutil::libzvutil {

/// Emits a Qt signal for a stop.
///
/// The object is constructed and destroyed on its own thread. Any thread may request the stop
/// meanwhile, but not during the construction (see `stop_token::connect_receiver`).
class qt_stop_token : public QObject
{
    Q_OBJECT

public:
    qt_stop_token(stop_token token, QObject* parent);
    /// Waits if another thread is about to emit `triggered`, until it has done so.
    ~qt_stop_token() override;

Q_SIGNALS:
    /// Emitted at most once, on the thread that requests the stop.
    void triggered();

private:
    stop_token m_token;
    std::shared_ptr<signalling::parameterised_abstract_receiver<>> m_registration;
    // A flag, since reading a reference count of zero wouldn't order the memory accesses before it.
    std::shared_ptr<std::atomic<bool>> m_receiverGone = std::make_shared<std::atomic<bool>>(false);
};

} // namespace zvutil::libzvutil
