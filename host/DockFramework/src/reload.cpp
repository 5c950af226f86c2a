#include "reload.h"

#include "plain_text.h"

#include <DockFramework/DockableWidgetContents.h>

#include <QMessageBox>
#include <QObject>
#include <QPushButton>

namespace {

bool mayLoseChanges(DockableWidgetContents& contents)
{
    QMessageBox box(QMessageBox::Warning, contents.getShortName(),
                    QObject::tr("Reload “%1”?").arg(contents.getShortName()), QMessageBox::Cancel,
                    &contents);
    box.setInformativeText(QObject::tr("Your changes are lost then."));
    showAsPlainText(box);
    const QPushButton* const reload =
        box.addButton(QObject::tr("&Reload"), QMessageBox::AcceptRole);
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
