#pragma once

#include <zvutil/zvutil_export.h>

#include <QObject>

namespace zvutil::libzvutil {

/// A signal and a slot that emits it, to carry a call to the thread of the signal's receiver: the
/// signal is emitted on the thread that calls `trigger`, and an automatic connection runs the
/// receiver's slot on the receiver's own thread.
///
/// `trigger` may be called on any thread while the object lives.
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT GenericTrigger : public QObject
{
    Q_OBJECT

public:
    /// A trigger that nothing is connected to.
    /// @param parent owns the trigger; may be null
    explicit GenericTrigger(QObject* parent = nullptr);
    /// Ends the connections; no thread may be calling `trigger`.
    ~GenericTrigger() override;

Q_SIGNALS:
    /// Emitted by `trigger`, on the thread that calls it.
    void signal();

public Q_SLOTS:
    /// Emits `signal`, nothing else.
    void trigger();
};

} // namespace zvutil::libzvutil
