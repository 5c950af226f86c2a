#pragma once

#include "common/Failure.h"

#include <zvutil/ZvFilePath.h>

#include <QObject>

class QWidget;

namespace workbench {

class CompressionTask;

/// Exports files to compressed ones, and imports those, without keeping the user waiting.
class DocumentTransfer : public QObject
{
    Q_OBJECT

public:
    /// \p window, the parent, is what questions and progress are shown over.
    explicit DocumentTransfer(QWidget& window);

    /// Asks where to, and exports \p source.
    void exportFile(const zvutil::ZvFilePath& source);

    /// Asks which file to import, and where to.
    void importFile();

    /// Shows the progress of what runs, and emits `finished` when that has ended. Returns false if
    /// nothing runs.
    bool awaitRunning();

Q_SIGNALS:
    void exported(const zvutil::ZvFilePath& target);
    void imported(const zvutil::ZvFilePath& target);
    void failed(const workbench::Failure& failure);
    /// After `awaitRunning`: a transfer has ended, well or not.
    void finished();

private:
    QWidget& m_window;
};

} // namespace workbench
