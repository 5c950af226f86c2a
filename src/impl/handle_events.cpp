#include "impl/handle_events.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace zvutil::impl {

void handle_events()
{
#if !defined(Q_OS_WIN) // The event loop there passes over none.
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
#endif
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace zvutil::impl
