#include "documents/CompressionTask.h"

#include "common/requests.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>

#include <QWidget>

namespace workbench {

using zvutil::libzvutil::abstract_response;

namespace {

constexpr int dialogDelay = 500;

} // namespace

CompressionTask::CompressionTask(CompressionRequest::Direction direction,
                                 const zvutil::ZvFilePath& source, const zvutil::ZvFilePath& target,
                                 QWidget* parent)
    : QObject(parent)
    , m_direction(direction)
    , m_source(source)
    , m_dialog(direction == CompressionRequest::Direction::Compress ? tr("Exporting “%1”…")
                                                                    : tr("Importing “%1”…"),
               tr("Cancel"), 0, 0, parent)
{
    m_dialog.setLabelText(m_dialog.labelText().arg(source.filename().toQString()));
    m_dialog.setWindowModality(Qt::WindowModal);
    m_dialog.setMinimumDuration(dialogDelay);
    const auto request = std::make_shared<CompressionRequest>(direction, source, target);
    m_response = std::make_unique<abstract_response>(request.get());
    connect(m_response.get(), &abstract_response::completed, this, [this, target] {
        deleteLater();
        Q_EMIT completed(target);
    });
    connect(m_response.get(), &abstract_response::failed, this,
            [this](const std::string& reason) { fail(reason); });
    connect(&m_dialog, &QProgressDialog::canceled, this, &CompressionTask::cancel);
    requests().add(request);
}

CompressionTask::~CompressionTask() = default;

void CompressionTask::showProgress()
{
    m_dialog.show();
}

void CompressionTask::cancel()
{
    m_isCancelled = true;
    m_response->abort();
    m_dialog.hide();
}

void CompressionTask::fail(const std::string& reason)
{
    deleteLater();
    if (m_isCancelled) {
        Q_EMIT cancelled();
        return;
    }
    const bool compresses = m_direction == CompressionRequest::Direction::Compress;
    Q_EMIT failed(
        {(compresses ? tr("“%1” was not exported.") : tr("“%1” was not imported."))
             .arg(m_source.toQString()),
         QString::fromStdString(reason),
         compresses ? tr("Choose another place, or free some space.")
                    : tr("Check that the file has been exported here, and choose another place.")});
}

} // namespace workbench
