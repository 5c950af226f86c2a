#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QObject>

class QTimerEvent;
class ZvProcessingIndicator;

/// The state of a spinner, which owns it.
class ZvProcessingIndicatorPrivate : public QObject
{
public:
    explicit ZvProcessingIndicatorPrivate(ZvProcessingIndicator* owner);
    ~ZvProcessingIndicatorPrivate() override;

    ZvProcessingIndicator* q;
    QBasicTimer timer;
    int angle = 0; ///< of the opaque bar, in degrees
    QColor colour;

protected:
    void timerEvent(QTimerEvent* event) override;
};
