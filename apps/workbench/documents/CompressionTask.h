#pragma once

#include "common/Failure.h"
#include "documents/CompressionRequest.h"

#include <zvutil/libzvutil/abstract_response.h>

#include <QObject>
#include <QProgressDialog>

#include <memory>

namespace workbench {

/// A compression with a progress dialog, in which it can be cancelled. It tells by exactly one of its
/// signals how it has ended, and deletes itself behind that.
class CompressionTask : public QObject
{
    Q_OBJECT

public:
    /// Starts at once. \p parent is the widget that the dialog stands before.
    CompressionTask(CompressionRequest::Direction direction, const zvutil::ZvFilePath& source,
                    const zvutil::ZvFilePath& target, QWidget* parent);
    ~CompressionTask() override;

    /// Shows the dialog at once, which else comes up when it takes a while.
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
