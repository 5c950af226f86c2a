#include "reload_when_allowed.h"

#include "plain_text.h"

#include <DockFramework/DockableWidgetContents.h>

#include <QMessageBox>
#include <QPushButton>

namespace {

bool mayLoseChanges(DockableWidgetContents& contents)
{
    QMessageBox box(QMessageBox::Warning, contents.getShortName(),
                    DockableWidgetContents::tr("Reload “%1”?").arg(contents.getShortName()),
                    QMessageBox::Cancel, &contents);
    box.setInformativeText(DockableWidgetContents::tr("Your changes will be lost."));
    showAsPlainText(box);
    const QPushButton* const reload =
        box.addButton(DockableWidgetContents::tr("&Reload"), QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == reload;
}

} // namespace

void reloadWhenAllowed(DockableWidgetContents& contents)
{
    if (!contents.isModified() || mayLoseChanges(contents))
        contents.reloadFile();
}
