#include "shell/DocumentTransfer.h"

#include "common/path_names.h"
#include "documents/CompressionTask.h"
#include "documents/EditedContent.h"
#include "documents/FileNameDialog.h"
#include "documents/save_file_name.h"
#include "output/OutputContent.h"
#include "output/export_file.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/DocumentType.h>
#include <zvworkbench/FileError.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QWidget>

#include <new>

namespace workbench {

namespace {

QString compressedExtension()
{
    return QStringLiteral(".z");
}

FileKind pdfFiles()
{
    return {DocumentTransfer::tr("PDF documents"), pdfExtension()};
}

/// Returns the kind of compressed files of a document, whose names still tell its type.
FileKind compressedFiles(const Document& document)
{
    const QString suffix = QFileInfo(qtFileName(document.filename())).suffix();
    const QString extension =
        suffix.isEmpty() ? document.type().extension : QLatin1Char('.') + suffix;
    return {DocumentTransfer::tr("Compressed documents"), extension + compressedExtension()};
}

/// Returns the path of the document's file without its extension, or the title of one that has no file.
QString baseOf(const Document& document)
{
    const QFileInfo file(qtFileName(document.filename()));
    return document.filename().isEmpty()
        ? document.shortTitle()
        : file.absolutePath() + QLatin1Char('/') + file.completeBaseName();
}

} // namespace

DocumentTransfer::DocumentTransfer(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
}

void DocumentTransfer::exportDocument(Document& document)
{
    const auto* const content = dynamic_cast<const OutputContent*>(&document);
    if (content && content->isBlank()) {
        Q_EMIT failed(nothingToSee(document, tr("“%1” was not exported.")));
        return;
    }
    std::vector<FileKind> kinds;
    if (content) {
        kinds.push_back(pdfFiles());
        for (const ExportFormat& format : content->exportFormats())
            kinds.push_back({format.what, format.extension});
    }
    kinds.push_back(compressedFiles(document));
    exportTo(document, kinds);
}

void DocumentTransfer::exportPdf(Document& document)
{
    exportTo(document, {pdfFiles()});
}

void DocumentTransfer::exportTo(Document& document, const std::vector<FileKind>& kinds)
{
    finishTyping(document);
    // The document may be destroyed when the user has answered.
    const QPointer<Document> exported(&document);
    const QString target =
        saveFileName(&m_window, tr("Export"), baseOf(document) + kinds.front().extension, kinds);
    if (!exported || target.isEmpty())
        return;
    if (target.endsWith(compressedExtension(), Qt::CaseInsensitive))
        compress(document, target);
    else
        write(document, target);
}

/// Writes the document as it is now in the format that the extension of \p target tells.
void DocumentTransfer::write(const Document& document, const QString& target)
{
    const QString title = document.shortTitle();
    QString reason;
    try {
        ProgressBox box(tr("Exporting “%1”…").arg(title), &m_window);
        exportFile(document, filePath(target), box.progress());
    } catch (const FileError& error) {
        reason = error.reason();
    } catch (const Stopped&) {
        return;
    } catch (const std::bad_alloc&) {
        reason = tr("There is not enough memory.");
    }
    if (reason.isEmpty())
        Q_EMIT exported(filePath(target));
    else
        Q_EMIT failed({tr("“%1” was not exported.").arg(title), reason,
                       tr("Choose another place or format, or free some space.")});
}

void DocumentTransfer::compress(Document& document, const QString& target)
{
    // The file is compressed, so the changes must be in there.
    const QPointer<Document> saved(&document);
    if (document.filename().isEmpty() || document.isModified())
        document.save();
    if (!saved || document.filename().isEmpty() || document.isModified())
        return;
    auto* const task = new CompressionTask(CompressionRequest::Direction::Compress,
                                           document.filename(), filePath(target), &m_window);
    connect(task, &CompressionTask::completed, this, &DocumentTransfer::exported);
    connect(task, &CompressionTask::failed, this, &DocumentTransfer::failed);
}

void DocumentTransfer::importFile()
{
    const QString source =
        QFileDialog::getOpenFileName(&m_window, tr("Import"), QString(),
                                     tr("Compressed documents (*%1)").arg(compressedExtension()));
    if (source.isEmpty())
        return;
    const QFileInfo file(source);
    const DocumentType* const type = documentTypeOfFile(file.completeBaseName());
    const QString target =
        FileNameDialog::ask(&m_window, tr("Import As"), file.absolutePath(),
                            file.completeBaseName(), type ? type->extension : QString());
    if (target.isEmpty())
        return;
    auto* const task = new CompressionTask(CompressionRequest::Direction::Decompress,
                                           filePath(source), filePath(target), &m_window);
    connect(task, &CompressionTask::completed, this, &DocumentTransfer::imported);
    connect(task, &CompressionTask::failed, this, &DocumentTransfer::failed);
}

bool DocumentTransfer::awaitRunning()
{
    const QList<CompressionTask*> tasks = m_window.findChildren<CompressionTask*>();
    for (CompressionTask* const task : tasks) {
        task->showProgress();
        connect(task, &QObject::destroyed, this, &DocumentTransfer::finished,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    }
    return !tasks.isEmpty();
}

} // namespace workbench
