#include "shell/HelpMenu.h"

#include "shell/AboutDialog.h"
#include "shell/ShortcutsDialog.h"

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>

namespace workbench {

HelpMenu::HelpMenu(QMainWindow& window)
    : QMenu(tr("&Help"), &window)
    , m_window(window)
{
    QAction* const shortcuts = addAction(tr("&Keyboard Shortcuts"), this, &HelpMenu::showShortcuts);
    shortcuts->setObjectName(QStringLiteral("shortcuts"));
    shortcuts->setShortcut(QKeySequence::HelpContents);
    addSeparator();
    QAction* const about = addAction(tr("&About Workbench"), this, &HelpMenu::showAbout);
    about->setObjectName(QStringLiteral("about"));
    about->setMenuRole(QAction::AboutRole);
}

void HelpMenu::showShortcuts()
{
    auto* const dialog = new ShortcutsDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void HelpMenu::showAbout()
{
    auto* const dialog = new AboutDialog(&m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace workbench
