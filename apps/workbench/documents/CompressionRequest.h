#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/libzvutil/abstract_request.h>

#include <QByteArray>
#include <QString>

namespace workbench {

/// Compresses a file, or decompresses one, in the background.
///
/// The content is written to a temporary file beside the target and checked; then the target gets it in
/// one step. If anything fails, the target stays as it is. An abort takes effect after
/// the temporary file has been written. The request fails with sentences for the user.
class CompressionRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    enum class Direction { Compress, Decompress };

    CompressionRequest(Direction direction, const zvutil::ZvFilePath& source,
                       const zvutil::ZvFilePath& target);

protected:
    void perform() override;

private:
    QString transfer() const;
    QByteArray transferred() const;

    Direction m_direction;
    zvutil::ZvFilePath m_source;
    zvutil::ZvFilePath m_target;
};

} // namespace workbench
