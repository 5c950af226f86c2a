#include "shell/EditMenu.h"

#include "documents/Document.h"
#include "shell/Workbench.h"

namespace workbench {

EditMenu::EditMenu(Workbench& workbench)
    : QMenu(tr("&Edit"), &workbench)
    , m_workbench(workbench)
    , m_find(new QAction(tr("&Find in Files…"), this))
{
    m_find->setObjectName(QStringLiteral("findInFiles"));
    m_find->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+F")));
    connect(m_find, &QAction::triggered, &workbench, &Workbench::findInFiles);
    // Its shortcut counts also while the menu isn't filled.
    workbench.addAction(m_find);
    connect(this, &QMenu::aboutToShow, this, &EditMenu::fill);
    fill();
}

void EditMenu::fill()
{
    clear();
    if (const Document* const document = m_workbench.currentDocument())
        addActions(document->actions());
    addSeparator();
    addAction(m_find);
}

} // namespace workbench
