#pragma once

#include <zvworkbench/Failure.h>

#include <zvutil/ZvFilePath.h>

#include <QObject>

#include <vector>

class QWidget;

namespace workbench {

class CompressionTask;
class Document;
struct FileKind;

/// Exports documents for other programs, and to compressed files, and imports such files. Compresses in the
/// background.
class DocumentTransfer : public QObject
{
    Q_OBJECT

public:
    /// Creates the object as a child of \p window, in front of which it shows questions and
    /// progress.
    explicit DocumentTransfer(QWidget& window);

    /// Asks where to export \p document to, and does or starts that. A document that is compressed is saved first.
    void exportDocument(Document& document);
    /// The same, but asks for a PDF file alone.
    void exportPdf(Document& document);

    /// Asks which file to import and where to, and starts that.
    void importFile();

    /// Shows the progress of the transfers that are running, and emits `finished` when one has
    /// ended. Returns false if none is running.
    bool awaitRunning();

Q_SIGNALS:
    void exported(const zvutil::ZvFilePath& target);
    void imported(const zvutil::ZvFilePath& target);
    void failed(const workbench::Failure& failure);
    /// Emitted after `awaitRunning` when a transfer has ended, whatever its outcome.
    void finished();

private:
    void exportTo(Document& document, const std::vector<FileKind>& kinds);
    void write(const Document& document, const QString& target);
    void compress(Document& document, const QString& target);

    QWidget& m_window;
};

} // namespace workbench
