#include <DockFramework/DockFrame.h>

#include <DockFramework/DockableWidget.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QApplication>
#include <QPointer>
#include <QString>

#include <algorithm>

DockFrame::DockFrame(QWidget* parent)
    : QMainWindow(parent)
{
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks | GroupedDragging);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget* /*before*/, const QWidget* now) { followFocus(now); });
}

DockFrame::~DockFrame()
{
    // Windows and focus go while the base class goes, and tell of it.
    qApp->disconnect(this);
    for (DockableWidget* const window : m_windows)
        window->disconnect(this);
}

void DockFrame::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Before that there is no room to share.
    if (!m_hasBeenShown)
        leaveRoomForDocuments();
    m_hasBeenShown = true;
}

DockableWidget* DockFrame::addContents(DockableWidgetContents* contents)
{
    auto* const window = new DockableWidget(contents, this);
    m_windows.append(window);
    connect(window, &QDockWidget::visibilityChanged, this, [this, window](bool visible) {
        // Another tab was chosen.
        if (visible && !window->isFloating())
            highlight(window);
    });
    connect(window, &QObject::destroyed, this, [this, window] {
        m_windows.removeOne(window);
        if (m_highlighted != window)
            return;
        m_highlighted = nullptr;
        Q_EMIT highlightedChanged(nullptr);
    });
    const bool isFirstDocument = contents->isContentWidget() && documents() == 1;
    place(*window);
    contents->show();
    window->show();
    // What the user has made of it later stays.
    if (isFirstDocument || !contents->isContentWidget())
        leaveRoomForDocuments();
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

int DockFrame::documents() const
{
    int count = 0;
    for (const DockableWidget* const window : dockableWidgets())
        count += window->contents()->isContentWidget() ? 1 : 0;
    return count;
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

// NOLINTNEXTLINE(readability-make-member-function-const): documents are part of the frame.
bool DockFrame::closeDocuments()
{
    // Each may ask the user, and windows may go meanwhile.
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

void DockFrame::place(DockableWidget& window)
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
        const QSize size = preferred.isValid() ? preferred : this->size() / 4;
        // Qt shares out what both are told to have.
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
