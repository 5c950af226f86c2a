#pragma once

#include <zvutil/signalling/parameterised_abstract_receiver.h>
#include <zvutil/stop_token.h>

#include <QObject>

#include <atomic>
#include <memory>

namespace zvutil::libzvutil {

/// Makes a Qt signal of a stop.
///
/// It is made and destroyed on its own thread. The stop may be requested on any other meanwhile,
/// but not while the object is being made (see `stop_token::connect_receiver`).
class qt_stop_token : public QObject
{
    Q_OBJECT

public:
    qt_stop_token(stop_token token, QObject* parent);
    /// If another thread is about to emit `triggered`, waits until it has done so.
    ~qt_stop_token() override;

Q_SIGNALS:
    /// Emitted at most once, on the thread that requests the stop.
    void triggered();

private:
    stop_token m_token;
    std::shared_ptr<signalling::parameterised_abstract_receiver<>> m_registration;
    // A reference count that has come to zero would say the same, but orders nothing before it.
    std::shared_ptr<std::atomic<bool>> m_receiver_gone = std::make_shared<std::atomic<bool>>(false);
};

} // namespace zvutil::libzvutil
