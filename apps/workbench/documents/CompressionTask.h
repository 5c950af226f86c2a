#pragma once

#include "documents/CompressionRequest.h"

#include <zvworkbench/Failure.h>

#include <zvutil/libzvutil/abstract_response.h>

#include <QObject>
#include <QProgressDialog>

#include <memory>

namespace workbench {

/// Compresses or decompresses a file, with a progress dialog in which the user can cancel. Emits
/// exactly one of its signals when it has ended, and then deletes itself.
class CompressionTask : public QObject
{
    Q_OBJECT

public:
    /// Starts the task at once. \p parent owns it, and is the widget in front of which the dialog
    /// appears.
    CompressionTask(CompressionRequest::Direction direction, const zvutil::ZvFilePath& source,
                    const zvutil::ZvFilePath& target, QWidget* parent);
    ~CompressionTask() override;

    /// Shows the dialog at once; otherwise it appears only if the task takes a while.
    void showProgress();

Q_SIGNALS:
    void completed(const zvutil::ZvFilePath& target);
    void cancelled();
    void failed(const workbench::Failure& failure);

private:
    void cancel();
    void fail(const std::string& reason);

    CompressionRequest::Direction m_direction;
    zvutil::ZvFilePath m_source;
    QProgressDialog m_dialog;
    std::unique_ptr<zvutil::libzvutil::abstract_response> m_response;
    bool m_isCancelled = false;
};

} // namespace workbench
