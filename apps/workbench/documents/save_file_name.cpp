#include "documents/save_file_name.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace workbench {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("workbench::SaveFileName", text);
}

QString withExtension(const QString& name, const QString& extension)
{
    return name.endsWith(extension, Qt::CaseInsensitive) ? name : name + extension;
}

bool mayReplace(QWidget* parent, const QString& file)
{
    QMessageBox box(QMessageBox::Warning, tr("Save"),
                    tr("There is a “%1” already. Replace it?").arg(QDir::toNativeSeparators(file)),
                    QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

} // namespace

QString saveFileName(QWidget* parent, const QString& title, const QString& place,
                     const QString& what, const QString& extension)
{
    QFileDialog dialog(parent, title, QString(), QStringLiteral("%1 (*%2)").arg(what, extension));
    const QFileInfo proposal(place);
    dialog.setDirectory(proposal.isDir() ? place : proposal.absolutePath());
    if (!proposal.isDir())
        dialog.selectFile(proposal.fileName());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // It adds that to names without a dot, and asks before it replaces a file.
    dialog.setDefaultSuffix(extension.mid(1));
    while (dialog.exec() == QDialog::Accepted) {
        const QString chosen = dialog.selectedFiles().constFirst();
        QString file = withExtension(chosen, extension);
        if (file == chosen || !QFileInfo::exists(file) || mayReplace(parent, file))
            return file;
    }
    return {};
}

} // namespace workbench
