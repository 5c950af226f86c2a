#include "impl/background/handle_events.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace zvutil::impl {

void notice_waiting_events()
{
#if !defined(Q_OS_WIN) // Windows' event loop doesn't skip events.
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
#endif
}

void handle_events()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace zvutil::impl
