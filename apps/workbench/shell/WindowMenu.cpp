#include "shell/WindowMenu.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>

namespace workbench {

namespace {

QList<DockableWidget*> documentWindows(const DockFrame& frame)
{
    QList<DockableWidget*> windows;
    for (DockableWidget* const window : frame.dockableWidgets()) {
        if (window->contents()->isContentWidget())
            windows.append(window);
    }
    return windows;
}

} // namespace

WindowMenu::WindowMenu(DockFrame& frame)
    : QMenu(tr("&Window"), &frame)
    , m_frame(frame)
    , m_next(new QAction(tr("&Next"), this))
    , m_previous(new QAction(tr("&Previous"), this))
{
    m_next->setShortcut(QKeySequence(QStringLiteral("Ctrl+Tab")));
    m_previous->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Tab")));
    // QMenu::clear() disconnects actions from their menu, so the frame is the receiver.
    connect(m_next, &QAction::triggered, &frame, [this] { activateNeighbour(1); });
    connect(m_previous, &QAction::triggered, &frame, [this] { activateNeighbour(-1); });
    frame.addActions({m_next, m_previous});
    connect(this, &QMenu::aboutToShow, this, &WindowMenu::fill);
    fill();
}

void WindowMenu::setDocument(Document* document)
{
    m_document = document;
}

void WindowMenu::fill()
{
    clear();
    addActions({m_next, m_previous});
    addSeparator();
    for (DockableWidget* const window : documentWindows(m_frame)) {
        const DockableWidgetContents& contents = *window->contents();
        QString text = contents.getShortName() + QLatin1String(contents.isModified() ? "*" : "");
        QAction* const action = addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(window->contents() == m_document);
        connect(action, &QAction::triggered, window, [this, window] { m_frame.activate(window); });
    }
}

void WindowMenu::activateNeighbour(int step)
{
    const QList<DockableWidget*> windows = documentWindows(m_frame);
    for (int i = 0; i < windows.size(); ++i) {
        if (windows.at(i)->contents() != m_document)
            continue;
        m_frame.activate(windows.at((i + step + windows.size()) % windows.size()));
        return;
    }
}

} // namespace workbench
