#include "DockTabs.h"

#include "DockTitleBar.h"

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QChildEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTabBar>
#include <QToolTip>

#include <algorithm>

DockTabs::DockTabs(DockFrame& frame)
    : QObject(&frame)
    , m_frame(frame)
{
    frame.installEventFilter(this);
    // Windows are moved one by one while a layout is restored, so look once after the last.
    m_update.setSingleShot(true);
    m_update.setInterval(0);
    connect(&m_update, &QTimer::timeout, this, &DockTabs::update);
}

bool DockTabs::eventFilter(QObject* watched, QEvent* event)
{
    auto* const bar = qobject_cast<QTabBar*>(watched);
    switch (event->type()) {
    case QEvent::ChildPolished:
        watch(static_cast<QChildEvent*>(event)->child());
        break;
    case QEvent::LayoutRequest:
        m_update.start();
        break;
    case QEvent::MouseButtonRelease: {
        const auto* const mouse = static_cast<QMouseEvent*>(event);
        DockableWidget* const window = bar && mouse->button() == Qt::MiddleButton
            ? windowOf(*bar, bar->tabAt(mouse->pos()))
            : nullptr;
        if (window)
            window->close();
        break;
    }
    case QEvent::ToolTip:
        if (bar) {
            const auto* const help = static_cast<QHelpEvent*>(event);
            return showToolTip(*bar, help->pos(), help->globalPos());
        }
        break;
    default:
        break;
    }
    return false;
}

/// Sets up \p child if it is a bar of tabs, looks into it if it is a floating group of windows, and notices
/// when it floats if it is a window.
void DockTabs::watch(QObject* child)
{
    if (auto* const bar = qobject_cast<QTabBar*>(child))
        setUp(*bar);
    else if (child->inherits("QDockWidgetGroupWindow"))
        child->installEventFilter(this);
    else if (const auto* const window = qobject_cast<QDockWidget*>(child))
        connect(window, &QDockWidget::topLevelChanged, this, [this] { m_update.start(); });
}

void DockTabs::setUp(QTabBar& bar)
{
    bar.installEventFilter(this);
    bar.setTabsClosable(true);
    bar.setAccessibleName(tr("Windows"));
    bar.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&bar, &QTabBar::tabCloseRequested, this, [this, &bar](int tab) {
        if (DockableWidget* const window = windowOf(bar, tab))
            window->close();
    });
    connect(&bar, &QWidget::customContextMenuRequested, this, [this, &bar](const QPoint& position) {
        if (const DockableWidget* const window = windowOf(bar, bar.tabAt(position)))
            static_cast<DockTitleBar*>(window->titleBarWidget())
                ->showMenu(bar.mapToGlobal(position));
    });
}

/// Returns the window of a tab, or null. Qt keeps its address with the tab, since two windows may have
/// the same title.
DockableWidget* DockTabs::windowOf(const QTabBar& bar, int tab) const
{
    const QList<DockableWidget*> windows = m_frame.dockableWidgets();
    const auto address = bar.tabData(tab).value<quintptr>();
    const auto found =
        std::find_if(windows.begin(), windows.end(), [address](const DockableWidget* window) {
            return reinterpret_cast<quintptr>(static_cast<const QWidget*>(window)) == address;
        });
    return found == windows.end() ? nullptr : *found;
}

bool DockTabs::showToolTip(const QTabBar& bar, const QPoint& position, const QPoint& screenPosition)
{
    const DockableWidget* const window = windowOf(bar, bar.tabAt(position));
    if (window)
        // As HTML, or a name that contains what looks like a tag would lose it.
        QToolTip::showText(screenPosition,
                           QLatin1String("<qt>") + window->contents()->longTitle().toHtmlEscaped());
    return window;
}

/// Returns whether the frame shows a tab for \p window.
bool DockTabs::hasTab(DockableWidget& window) const
{
    // Windows that float or are closed keep their place among the tabs.
    const QList<QDockWidget*> others = m_frame.tabifiedDockWidgets(&window);
    return !window.isFloating()
        && std::any_of(others.begin(), others.end(), [](const QDockWidget* other) {
               return !other->isFloating() && !other->isHidden();
           });
}

/// Leaves out the title bars of windows that have a tab, and has the keyboard pass over bars without any: Qt
/// keeps those it may need again, shown but out of sight.
void DockTabs::update()
{
    for (QTabBar* const bar : m_frame.findChildren<QTabBar*>()) {
        const QObject* const owner = bar->parent();
        if (owner != &m_frame && !owner->inherits("QDockWidgetGroupWindow"))
            continue;
        // Qt gives each bar a base line when it puts windows into it.
        bar->setDrawBase(false);
        bar->setFocusPolicy(bar->count() > 0 ? Qt::TabFocus : Qt::NoFocus);
    }
    for (DockableWidget* const window : m_frame.dockableWidgets())
        static_cast<DockTitleBar*>(window->titleBarWidget())->setCollapsed(hasTab(*window));
}
