#include "documents/CompressionRequest.h"

#include "common/file_content.h"
#include "common/path_names.h"

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFileException.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QObject>

#include <exception>
#include <filesystem>
#include <new>
#include <system_error>

namespace workbench {

namespace {

constexpr int defaultLevel = -1;
constexpr int lengthBytes = 4;

/// Returns whether \p compressed holds the content of \p original. A full disk isn't reported while
/// the file is written, so both are read and compared.
bool isFaithful(const zvutil::ZvFilePath& compressed, const zvutil::ZvFilePath& original)
{
    return qUncompress(contentOf(compressed)) == contentOf(original);
}

/// Returns whether \p restored has the length that \p compressed states. Decompressing a damaged
/// file reports no error and gives an empty file, as an empty document does.
bool isRestored(const zvutil::ZvFilePath& restored, const zvutil::ZvFilePath& compressed)
{
    QFile source(qtFileName(compressed));
    if (!source.open(QIODevice::ReadOnly))
        return false;
    const QByteArray length = source.read(lengthBytes);
    quint32 expected = 0;
    for (const char byte : length)
        expected = expected << 8U | static_cast<unsigned char>(byte);
    return length.size() == lengthBytes
        && QFile(qtFileName(restored)).size() == static_cast<qint64>(expected);
}

} // namespace

CompressionRequest::CompressionRequest(Direction direction, const zvutil::ZvFilePath& source,
                                       const zvutil::ZvFilePath& target)
    : m_direction(direction)
    , m_source(source)
    , m_target(target)
    , m_part(filePath(qtFileName(target) + QStringLiteral(".part")))
{
}

void CompressionRequest::perform()
{
    QString error = writePart();
    QCoreApplication::processEvents();
    if (error.isEmpty() && abort_requested())
        error = tr("Cancelled.");
    if (error.isEmpty()) {
        std::error_code code;
        std::filesystem::rename(m_part.toStdFilePath(), m_target.toStdFilePath(), code);
        if (code)
            error = QString::fromLocal8Bit(code.message().c_str());
    }
    if (error.isEmpty()) {
        Q_EMIT completed();
        return;
    }
    QFile::remove(qtFileName(m_part));
    Q_EMIT failed(error.toStdString());
}

/// Writes the target's content to the part file. Returns an empty text, or why that failed.
QString CompressionRequest::writePart() const
{
    try {
        if (m_direction == Direction::Compress) {
            ZvCompression::compress(m_source, m_part, ZvCompressionType::Zlib, defaultLevel);
            return isFaithful(m_part, m_source) ? QString()
                                                : tr("The file was not written completely.");
        }
        ZvCompression::decompress(m_source, m_part, ZvCompressionType::Zlib);
        return isRestored(m_part, m_source)
            ? QString()
            : tr("The file is not a compressed document, it is damaged, or the disk is full.");
    } catch (const zvutil::ZvFileException& exception) {
        return QString::fromUtf8(exception.what());
    } catch (const std::bad_alloc&) {
        return tr("There is not enough memory.");
    } catch (const std::exception& exception) {
        return QString::fromUtf8(exception.what());
    }
}

} // namespace workbench
