#include <DockFramework/DockFrame.h>

#include "DockTabs.h"

#include <DockFramework/DockableWidget.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QApplication>
#include <QDataStream>
#include <QEvent>
#include <QPointer>
#include <QString>

#include <algorithm>
#include <utility>

DockFrame::DockFrame(QWidget* parent)
    : QMainWindow(parent)
{
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks | GroupedDragging);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    new DockTabs(*this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget* /*before*/, const QWidget* now) { followFocus(now); });
}

DockFrame::~DockFrame()
{
    // Disconnect first: the base class destroys windows and moves the focus, and their signals
    // would reach members that are destroyed already.
    qApp->disconnect(this);
    for (DockableWidget* const window : m_windows)
        window->disconnect(this);
}

void DockFrame::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Share the room now: before the first show Qt has none to share.
    if (!m_isRoomShared)
        leaveRoomForDocuments();
    m_isRoomShared = true;
}

QByteArray DockFrame::saveLayout() const
{
    QHash<QString, QSize> sizes;
    for (const DockableWidget* const window : m_windows) {
        if (m_panelSizes.contains(window))
            sizes[window->objectName()] = m_panelSizes[window];
    }
    QByteArray layout;
    QDataStream stream(&layout, QIODevice::WriteOnly);
    stream << saveState() << sizes;
    return layout;
}

bool DockFrame::restoreLayout(const QByteArray& layout)
{
    QByteArray state;
    QHash<QString, QSize> sizes;
    QDataStream stream(layout);
    stream >> state >> sizes;
    if (stream.status() != QDataStream::Ok || !restoreState(state))
        return false;
    for (const DockableWidget* const window : m_windows) {
        if (sizes.contains(window->objectName()))
            m_panelSizes[window] = sizes[window->objectName()];
    }
    // Qt shares the room by other rules before the frame is shown than afterwards.
    if (m_isRoomShared)
        leaveRoomForDocuments();
    return true;
}

bool DockFrame::eventFilter(QObject* watched, QEvent* event)
{
    // Sizes count only while documents are shown: without any, the panels temporarily fill the
    // frame.
    auto* const panel = qobject_cast<QDockWidget*>(watched);
    if (panel && event->type() == QEvent::Resize && m_isRoomShared && showsDocuments()) {
        m_panelSizes[panel] = panel->size();
        // Panels in one tab group have one size.
        for (const QDockWidget* const other : tabifiedDockWidgets(panel))
            m_panelSizes[other] = panel->size();
    }
    return QMainWindow::eventFilter(watched, event);
}

DockableWidget* DockFrame::addContents(DockableWidgetContents* contents)
{
    auto* const window = new DockableWidget(contents, this);
    m_windows.append(window);
    connect(window, &QDockWidget::visibilityChanged, this, [this, window](bool visible) {
        // A docked window becomes visible when the user chooses its tab.
        if (visible && !window->isFloating())
            highlight(window);
    });
    connect(window, &QObject::destroyed, this, [this, window] {
        m_windows.removeOne(window);
        m_panelSizes.remove(window);
        if (m_highlighted != window)
            return;
        m_highlighted = nullptr;
        Q_EMIT highlightedChanged(nullptr);
    });
    const bool isFirstDocument = contents->isContentWidget() && !showsDocuments();
    if (!contents->isContentWidget())
        window->installEventFilter(this);
    const bool wasRoomShared = std::exchange(m_isRoomShared, false);
    dock(*window);
    contents->show();
    window->show();
    // Only new panels and the first document change the layout, so that the user's own sizes stay.
    if (isFirstDocument || !contents->isContentWidget())
        leaveRoomForDocuments();
    m_isRoomShared = wasRoomShared;
    activate(window);
    return window;
}

QList<DockableWidget*> DockFrame::dockableWidgets() const
{
    QList<DockableWidget*> windows;
    for (DockableWidget* const window : m_windows) {
        if (window->contents())
            windows.append(window);
    }
    return windows;
}

bool DockFrame::showsDocuments() const
{
    const QList<DockableWidget*> windows = dockableWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const DockableWidget* window) {
        return window->contents()->isContentWidget() && !window->isHidden();
    });
}

DockableWidget* DockFrame::highlighted() const
{
    return m_highlighted;
}

void DockFrame::activate(DockableWidget* window)
{
    window->show();
    window->raise();
    window->contents()->setFocus();
    highlight(window);
}

// NOLINTNEXTLINE(readability-make-member-function-const): closing windows changes the frame.
bool DockFrame::closeDocuments()
{
    // Each close may ask the user, and windows may be deleted meanwhile.
    QList<QPointer<DockableWidget>> windows;
    for (DockableWidget* const window : dockableWidgets()) {
        if (window->contents()->isContentWidget())
            windows.append(window);
    }
    std::stable_partition(
        windows.begin(), windows.end(),
        [](const QPointer<DockableWidget>& window) { return window->contents()->isModified(); });
    return std::all_of(windows.begin(), windows.end(), [](const QPointer<DockableWidget>& window) {
        return !window || window->close();
    });
}

void DockFrame::dock(DockableWidget& window)
{
    switch (window.contents()->getPreferredDockLocation()) {
    case DockLocationPreference::Left:
        addDockWidget(Qt::LeftDockWidgetArea, &window);
        return;
    case DockLocationPreference::Right:
        addDockWidget(Qt::RightDockWidgetArea, &window);
        return;
    case DockLocationPreference::Top:
        addDockWidget(Qt::TopDockWidgetArea, &window);
        return;
    case DockLocationPreference::Bottom:
        addDockWidget(Qt::BottomDockWidgetArea, &window);
        return;
    case DockLocationPreference::Floating:
        addDockWidget(Qt::RightDockWidgetArea, &window);
        window.setFloating(true);
        return;
    case DockLocationPreference::Documents:
        break;
    }
    for (DockableWidget* const other : dockableWidgets()) {
        if (other == &window || other->isFloating() || other->isHidden()
            || !other->contents()->isContentWidget())
            continue;
        tabifyDockWidget(other, &window);
        return;
    }
    addDockWidget(Qt::RightDockWidgetArea, &window);
}

void DockFrame::leaveRoomForDocuments()
{
    const QList<DockableWidget*> windows = dockableWidgets();
    const auto document = std::find_if(windows.begin(), windows.end(), [](DockableWidget* window) {
        return window->contents()->isContentWidget() && !window->isFloating();
    });
    if (document == windows.end())
        return;
    for (DockableWidget* const window : windows) {
        if (window->isFloating() || window->isHidden() || window->contents()->isContentWidget())
            continue;
        const Qt::DockWidgetArea area = dockWidgetArea(window);
        const bool isAtTheSide = area == Qt::LeftDockWidgetArea || area == Qt::RightDockWidgetArea;
        const QSize preferred = window->contents()->getPreferredNewWindowSize();
        const QSize size =
            m_panelSizes.value(window, preferred.isValid() ? preferred : this->size() / 4);
        // resizeDocks() distributes the sum of the sizes over the given docks, so give the document
        // the rest.
        if (isAtTheSide)
            resizeDocks({window, *document}, {size.width(), width() - size.width()},
                        Qt::Horizontal);
        else
            resizeDocks({window, *document}, {size.height(), height() - size.height()},
                        Qt::Vertical);
    }
}

void DockFrame::highlight(DockableWidget* window)
{
    if (m_highlighted == window)
        return;
    if (m_highlighted)
        m_highlighted->setHighlighted(false);
    m_highlighted = window;
    if (window)
        window->setHighlighted(true);
    Q_EMIT highlightedChanged(window);
}

void DockFrame::followFocus(const QWidget* focused)
{
    for (DockableWidget* const window : dockableWidgets()) {
        if (focused && (window == focused || window->isAncestorOf(focused))) {
            highlight(window);
            return;
        }
    }
}
