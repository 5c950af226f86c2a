#include "shell/DocumentCommands.h"

#include "common/file_uri.h"
#include "common/path_names.h"
#include "documents/FileNameDialog.h"
#include "shell/DocumentTransfer.h"
#include "shell/RecentFiles.h"
#include "shell/Workbench.h"
#include "shell/file_opening.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>

namespace workbench {

DocumentCommands::DocumentCommands(Workbench& window, DocumentTransfer& transfer)
    : QObject(&window)
    , m_window(window)
    , m_transfer(transfer)
{
}

void DocumentCommands::save()
{
    if (Document* const document = m_window.currentDocument())
        document->save();
}

void DocumentCommands::saveAs()
{
    if (Document* const document = m_window.currentDocument())
        document->saveAs();
}

void DocumentCommands::saveAll()
{
    for (Document* const document : m_window.documents()) {
        if (document->isModified())
            document->save();
    }
}

void DocumentCommands::rename()
{
    // The current document may be another one, or this one destroyed, when the user has answered.
    const QPointer<Document> document = m_window.currentDocument();
    if (!document || !hasFile(*document))
        return;
    const QFileInfo file(qtFileName(document->filename()));
    const QString renamed = FileNameDialog::ask(&m_window, tr("Rename"), file.absolutePath(),
                                                file.fileName(), requiredExtension(*document));
    if (!document || renamed.isEmpty() || renamed == file.absoluteFilePath())
        return;
    document->enableFileWatcher(false);
    QFile renaming(file.absoluteFilePath());
    if (renaming.rename(renamed)) {
        document->setFilename(filePath(renamed));
        m_window.recentFiles().add(canonicalName(renamed));
    } else {
        m_window.showFailure(
            {tr("“%1” was not renamed.").arg(QDir::toNativeSeparators(file.absoluteFilePath())),
             renaming.errorString(), tr("Choose another name.")});
    }
    document->enableFileWatcher(true);
}

/// Returns whether \p document has a file. If not, shows a message.
bool DocumentCommands::hasFile(const Document& document)
{
    if (!document.filename().isEmpty())
        return true;
    m_window.showMessage(tr("“%1” has no file yet. Save it first.").arg(document.shortTitle()));
    return false;
}

void DocumentCommands::exportFile()
{
    if (Document* const document = m_window.currentDocument())
        m_transfer.exportDocument(*document);
}

void DocumentCommands::copyAsUri()
{
    const Document* const document = m_window.currentDocument();
    if (!document || !hasFile(*document))
        return;
    const QString uri = fileUri(qtFileName(document->filename()));
    QGuiApplication::clipboard()->setText(uri);
    m_window.showMessage(tr("Copied “%1”").arg(uri));
}

void DocumentCommands::close()
{
    const Document* const document = m_window.currentDocument();
    for (DockableWidget* const window : m_window.dockableWidgets()) {
        if (document && window->contents() == document) {
            window->close();
            return;
        }
    }
}

} // namespace workbench
