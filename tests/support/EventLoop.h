#pragma once

#include <QEventLoop>
#include <QMetaObject>

namespace zvtest {

/// Lets the event loop of this thread run until it has nothing left to do for now.
inline void runEventLoop()
{
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection);
    loop.exec();
}

} // namespace zvtest
