#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/libzvutil/abstract_request.h>

namespace workbench {

/// Writes a file compressed, or a compressed one back, in the background.
///
/// The target is replaced in one step when all has been written and read again, and stays as it is if
/// something fails. An abort takes effect when the file has been written. It fails with sentences for
/// the user.
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
    QString writePart() const;

    Direction m_direction;
    zvutil::ZvFilePath m_source;
    zvutil::ZvFilePath m_target;
    zvutil::ZvFilePath m_part;
};

} // namespace workbench
