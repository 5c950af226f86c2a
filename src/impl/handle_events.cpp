#include "impl/handle_events.h"

#include <QCoreApplication>

namespace zvutil::impl {

void handle_events()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace zvutil::impl
