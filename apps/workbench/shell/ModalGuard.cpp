#include "shell/ModalGuard.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace workbench {

namespace {

/// Returns the widget that \p object, such as an action, belongs to.
QWidget* widgetOf(QObject* object)
{
    while (object && !object->isWidgetType())
        object = object->parent();
    return static_cast<QWidget*>(object);
}

/// Returns whether \p object belongs to \p box, or to a window that was opened from it.
bool isIn(const QWidget& box, QObject* object)
{
    for (const QWidget* widget = widgetOf(object); widget; widget = widget->parentWidget()) {
        if (widget == &box)
            return true;
    }
    return false;
}

} // namespace

ModalGuard::ModalGuard(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
    qApp->installEventFilter(this);
}

bool ModalGuard::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Shortcut)
        return false;
    const QWidget* const box = QApplication::activeModalWidget();
    const QWidget* const owner = widgetOf(watched);
    // Windows that stand beside the guarded one aren't blocked by its boxes.
    return box && owner && (owner == &m_window || m_window.isAncestorOf(owner))
        && !isIn(*box, watched);
}

} // namespace workbench
