#include "shell/WindowStack.h"

#include <zvutil/ZvStyleEditor.h>

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace workbench {

WindowStack::WindowStack(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
    qApp->installEventFilter(this);
}

bool WindowStack::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Show || !watched->isWidgetType())
        return false;
    auto* const shown = static_cast<QWidget*>(watched);
    if (shown == &m_window || shown->parentWidget() || shown->windowType() != Qt::Window)
        return false;
    // The desktop looks at this when the window is shown, which follows this event.
    if (QWindow* const handle = shown->windowHandle())
        handle->setTransientParent(m_window.windowHandle());
    if (qobject_cast<libzvutil::ZvStyleEditor*>(shown)) {
        // A copy of a style has a longer name than the styles that are there first.
        for (QComboBox* const names : shown->findChildren<QComboBox*>())
            names->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    }
    return false;
}

} // namespace workbench
