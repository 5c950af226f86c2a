#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace zvtest {

/// Counts the objects of a type that the main thread's event loop deletes while this lives. What is
/// deleted at once isn't among them.
template <typename Object>
class DeferredDeletes : public QObject
{
public:
    DeferredDeletes() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::DeferredDelete && qobject_cast<Object*>(watched))
            ++count;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;
};

} // namespace zvtest
