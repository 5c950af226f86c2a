#include "shell/WindowMenu.h"

#include "documents/Document.h"
#include "shell/Workbench.h"

#include <DockFramework/DockableWidget.h>

namespace workbench {

namespace {

QList<DockableWidget*> documentWindows(const Workbench& workbench)
{
    QList<DockableWidget*> windows;
    for (DockableWidget* const window : workbench.dockableWidgets()) {
        if (window->contents()->isContentWidget())
            windows.append(window);
    }
    return windows;
}

} // namespace

WindowMenu::WindowMenu(Workbench& workbench)
    : QMenu(tr("&Window"), &workbench)
    , m_workbench(workbench)
    , m_next(new QAction(tr("&Next"), this))
    , m_previous(new QAction(tr("&Previous"), this))
{
    m_next->setShortcut(QKeySequence(QStringLiteral("Ctrl+Tab")));
    m_previous->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Tab")));
    // Not with this menu as the receiver, which disconnects actions when it is cleared.
    connect(m_next, &QAction::triggered, &workbench, [this] { activateNeighbour(1); });
    connect(m_previous, &QAction::triggered, &workbench, [this] { activateNeighbour(-1); });
    workbench.addActions({m_next, m_previous});
    connect(this, &QMenu::aboutToShow, this, &WindowMenu::fill);
    fill();
}

void WindowMenu::fill()
{
    clear();
    addActions({m_next, m_previous});
    addSeparator();
    for (DockableWidget* const window : documentWindows(m_workbench)) {
        const DockableWidgetContents& contents = *window->contents();
        QString text = contents.getShortName() + QLatin1String(contents.isModified() ? "*" : "");
        QAction* const action = addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(window->contents() == m_workbench.currentDocument());
        connect(action, &QAction::triggered, window,
                [this, window] { m_workbench.activate(window); });
    }
}

void WindowMenu::activateNeighbour(int step)
{
    const QList<DockableWidget*> windows = documentWindows(m_workbench);
    for (int i = 0; i < windows.size(); ++i) {
        if (windows.at(i)->contents() != m_workbench.currentDocument())
            continue;
        m_workbench.activate(windows.at((i + step + windows.size()) % windows.size()));
        return;
    }
}

} // namespace workbench
