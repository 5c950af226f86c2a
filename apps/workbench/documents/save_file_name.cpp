#include "documents/save_file_name.h"

#include "documents/FileNameDialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>

#include <algorithm>

namespace workbench {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::SaveFileName)
};

/// Returns the last part of an extension, such as ".z" of ".testplan.z", which is all that file dialogs know of.
QString lastPart(const QString& extension)
{
    return extension.mid(extension.lastIndexOf(QLatin1Char('.')));
}

bool hasEnd(const QString& name, const QString& end)
{
    return name.endsWith(end, Qt::CaseInsensitive);
}

/// Returns \p name with the extension of a kind, that of \p chosen if there is none.
QString withExtension(const QString& name, const std::vector<FileKind>& kinds,
                      const FileKind& chosen)
{
    for (const FileKind& kind : kinds) {
        if (hasEnd(name, kind.extension))
            return name;
    }
    for (const FileKind& kind : kinds) {
        if (hasEnd(name, lastPart(kind.extension)))
            return name.chopped(lastPart(kind.extension).size()) + kind.extension;
    }
    return name + chosen.extension;
}

QString filterOf(const FileKind& kind)
{
    return QStringLiteral("%1 (*%2)").arg(kind.what, lastPart(kind.extension));
}

/// Returns the kind that is chosen in a dialog.
const FileKind& chosenOf(const QFileDialog& dialog, const std::vector<FileKind>& kinds)
{
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&dialog](const FileKind& kind) {
        return filterOf(kind) == dialog.selectedNameFilter();
    });
    return found == kinds.end() ? kinds.front() : *found;
}

bool mayReplace(QWidget* parent, const QString& file)
{
    QMessageBox box(
        QMessageBox::Warning, Texts::tr("Save"),
        Texts::tr("“%1” already exists. Replace it?").arg(QDir::toNativeSeparators(file)),
        QMessageBox::Yes | QMessageBox::No, parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

/// Returns whether Windows lets a file have this name; tells the user why not. Windows itself would write to
/// the device NUL without a word, and to a stream of the file "a" for "a:b".
bool isPossible([[maybe_unused]] QWidget* parent, [[maybe_unused]] const QString& file)
{
#if defined(Q_OS_WIN)
    const QString native = QDir::toNativeSeparators(file);
    const QString problem =
        FileNameDialog::problemWithText(native.mid(native.lastIndexOf(QLatin1Char('\\')) + 1));
    if (problem.isEmpty())
        return true;
    QMessageBox box(QMessageBox::Warning, Texts::tr("Save"), problem, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
    return false;
#else
    return true;
#endif
}

/// The folder that the user has saved to last, empty at first.
QString& lastFolder()
{
    static QString folder;
    return folder;
}

QString folderOf(const QString& start)
{
    const QFileInfo proposal(start);
    if (proposal.isDir())
        return start;
    if (proposal.isAbsolute())
        return proposal.absolutePath();
    if (QFileInfo(lastFolder()).isDir())
        return lastFolder();
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

QString saveFileName(QWidget* parent, const QString& title, const QString& start,
                     const QString& what, const QString& extension)
{
    return saveFileName(parent, title, start, {{what, extension}});
}

QString saveFileName(QWidget* parent, const QString& title, const QString& start,
                     const std::vector<FileKind>& kinds)
{
    QStringList filters;
    for (const FileKind& kind : kinds)
        filters.append(filterOf(kind));
    QFileDialog dialog(parent, title, QString(), filters.join(QStringLiteral(";;")));
    const QFileInfo proposal(start);
    dialog.setDirectory(folderOf(start));
    if (!proposal.isDir())
        dialog.selectFile(proposal.fileName());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // QFileDialog adds the suffix to names without a dot alone, and asks before it replaces a file.
    const auto propose = [&] { dialog.setDefaultSuffix(chosenOf(dialog, kinds).extension.mid(1)); };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, propose);
    propose();
    while (dialog.exec() == QDialog::Accepted) {
        const QString chosen = dialog.selectedFiles().constFirst();
        QString file = withExtension(chosen, kinds, chosenOf(dialog, kinds));
        if (!isPossible(parent, file))
            continue;
        if (file == chosen || !QFileInfo::exists(file) || mayReplace(parent, file)) {
            lastFolder() = QFileInfo(file).absolutePath();
            return file;
        }
    }
    return {};
}

} // namespace workbench
