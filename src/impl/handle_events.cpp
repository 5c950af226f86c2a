#include "impl/handle_events.h"

#include <QCoreApplication>

namespace zvutil::impl {

void handle_events()
{
#if !defined(Q_OS_WIN) // Its loop passes over none, and posts what is due of timers.
    QCoreApplication::sendPostedEvents();
#endif
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace zvutil::impl
