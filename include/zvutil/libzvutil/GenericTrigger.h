#pragma once

#include <zvutil/zvutil_export.h>

#include <QObject>

namespace zvutil::libzvutil {

/// A signal and a slot that emits it. It carries a call to wherever the signal's receiver lives:
/// the signal is emitted on the thread that calls `trigger`, and an automatic connection runs the
/// receiver's slot on the receiver's own thread.
///
/// `trigger` may be called on any thread while the object lives.
class ZVUTIL_EXPORT GenericTrigger : public QObject
{
    Q_OBJECT

public:
    explicit GenericTrigger(QObject* parent = nullptr);
    ~GenericTrigger() override;

Q_SIGNALS:
    void signal();

public Q_SLOTS:
    /// Emits `signal`, nothing else.
    void trigger();
};

} // namespace zvutil::libzvutil
