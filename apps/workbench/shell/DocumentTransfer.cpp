#include "shell/DocumentTransfer.h"

#include "common/path_names.h"
#include "documents/CompressionTask.h"
#include "documents/FileNameDialog.h"
#include "documents/save_file_name.h"

#include <zvworkbench/DocumentType.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QWidget>

namespace workbench {

namespace {

QString compressedExtension()
{
    return QStringLiteral(".z");
}

} // namespace

DocumentTransfer::DocumentTransfer(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
}

void DocumentTransfer::exportFile(const zvutil::ZvFilePath& source)
{
    const QString target =
        saveFileName(&m_window, tr("Export"), qtFileName(source) + compressedExtension(),
                     tr("Compressed documents"), compressedExtension());
    if (target.isEmpty())
        return;
    auto* const task = new CompressionTask(CompressionRequest::Direction::Compress, source,
                                           filePath(target), &m_window);
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
