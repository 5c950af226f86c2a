#include "shell/ModulesMenu.h"

#include <zvworkbench/MenuEntry.h>
#include <zvworkbench/WorkbenchWindow.h>

#include <exception>

namespace workbench {

namespace {

void call(const MenuEntry& entry, WorkbenchWindow& window)
{
    try {
        entry.work(window);
    } catch (const std::exception& error) {
        window.showFailure(
            {ModulesMenu::tr("“%1” failed.").arg(QString(entry.text).remove(QLatin1Char('&'))),
             QString::fromUtf8(error.what()),
             ModulesMenu::tr("Try again, or restart the program.")});
    }
}

} // namespace

ModulesMenu::ModulesMenu(WorkbenchWindow& window, QWidget* parent)
    : QMenu(tr("&Modules"), parent)
{
    setObjectName(QStringLiteral("modules"));
    for (const MenuEntry* const entry : addedMenuEntries()) {
        QAction* const action = addAction(entry->text);
        action->setObjectName(QStringLiteral("module:") + entry->id);
        action->setShortcut(entry->shortcut);
        connect(action, &QAction::triggered, this, [entry, &window] { call(*entry, window); });
    }
}

} // namespace workbench
