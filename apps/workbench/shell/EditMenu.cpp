#include "shell/EditMenu.h"

#include <zvworkbench/Document.h>

namespace workbench {

EditMenu::EditMenu(QWidget& window)
    : QMenu(tr("&Edit"), &window)
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
    m_document = document;
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
