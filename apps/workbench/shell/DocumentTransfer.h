#pragma once

#include <zvworkbench/Failure.h>

#include <zvutil/ZvFilePath.h>

#include <QObject>

class QWidget;

namespace workbench {

class CompressionTask;

/// Exports files to compressed ones and imports such files, in the background.
class DocumentTransfer : public QObject
{
    Q_OBJECT

public:
    /// Creates the object as a child of \p window, in front of which it shows questions and
    /// progress.
    explicit DocumentTransfer(QWidget& window);

    /// Asks where to export \p source to, and starts that.
    void exportFile(const zvutil::ZvFilePath& source);

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
    QWidget& m_window;
};

} // namespace workbench
