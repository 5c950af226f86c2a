#include "shell/EditMenu.h"

#include <zvworkbench/Document.h>

#include <utility>

namespace workbench {

EditMenu::EditMenu(QWidget& window)
    : QMenu(tr("&Edit"), &window)
    , m_window(window)
    , m_find(new QAction(tr("&Find in Files…"), this))
{
    m_find->setObjectName(QStringLiteral("findInFiles"));
    m_find->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F")));
    // QMenu::clear() disconnects actions from their menu, so the window is the receiver.
    connect(m_find, &QAction::triggered, &window, [this] { Q_EMIT findInFilesRequested(); });
    // QMenu::clear() deletes actions that no other widget has, so the window has this one, too, and
    // offers its shortcut at any time.
    window.addAction(m_find);
    connect(this, &QMenu::aboutToShow, this, &EditMenu::fill);
    fill();
}

void EditMenu::setDocument(Document* document)
{
    // A shortcut that two documents offer in the whole window would be ambiguous, and Qt would call neither.
    for (const QPointer<QAction>& action : std::as_const(m_windowActions)) {
        if (!action)
            continue;
        m_window.removeAction(action);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    m_windowActions.clear();
    m_document = document;
    if (!document)
        return;
    for (QAction* const action : document->windowActions()) {
        action->setShortcutContext(Qt::WindowShortcut);
        m_window.addAction(action);
        m_windowActions.append(action);
    }
}

void EditMenu::fill()
{
    clear();
    if (m_document)
        addActions(m_document->actions());
    addSeparator();
    addAction(m_find);
}

} // namespace workbench
