#include "documents/ask_to_overwrite.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

namespace workbench {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::AskToOverwrite)
};

} // namespace

OverwriteAnswer askToOverwrite(QWidget* parent, const QString& name)
{
    QMessageBox box(QMessageBox::Warning, Texts::tr("Save"),
                    Texts::tr("“%1” has been changed by another program.").arg(name),
                    QMessageBox::Cancel, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(
        Texts::tr("If you overwrite the file, the changes of the other program are lost."));
    const QAbstractButton* const overwrite =
        box.addButton(Texts::tr("&Overwrite"), QMessageBox::DestructiveRole);
    const QAbstractButton* const saveAs =
        box.addButton(Texts::tr("Save &As…"), QMessageBox::AcceptRole);
    box.setDefaultButton(QMessageBox::Cancel);
    box.exec();
    if (box.clickedButton() == overwrite)
        return OverwriteAnswer::Overwrite;
    return box.clickedButton() == saveAs ? OverwriteAnswer::SaveAs : OverwriteAnswer::Cancel;
}

} // namespace workbench
