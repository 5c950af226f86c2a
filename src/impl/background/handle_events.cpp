#include "impl/background/handle_events.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace zvutil::impl {

void notice_waiting_events()
{
#if !defined(Q_OS_WIN) // The event loop there passes over none.
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
#endif
}

void handle_events()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace zvutil::impl
