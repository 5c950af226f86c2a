#include "impl/ZvProcessingIndicatorPrivate.h"

#include <zvutil/ZvProcessingIndicator.h>

#include <QTimerEvent>

ZvProcessingIndicatorPrivate::ZvProcessingIndicatorPrivate(ZvProcessingIndicator* owner)
    : QObject(owner)
    , q(owner)
    , colour(Qt::black)
{
}

ZvProcessingIndicatorPrivate::~ZvProcessingIndicatorPrivate()
{
    if (timer.isActive())
        timer.stop();
}

void ZvProcessingIndicatorPrivate::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    angle = (angle + 30) % 360;
    q->update();
}
