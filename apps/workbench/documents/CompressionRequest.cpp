#include "documents/CompressionRequest.h"

#include "common/file_content.h"
#include "common/path_names.h"

#include <zvworkbench/FileError.h>

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFileException.h>

#include <HostSupport/saving.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>

#include <exception>
#include <new>

namespace workbench {

namespace {

constexpr int defaultLevel = -1;
constexpr int lengthBytes = 4;

/// Returns whether \p compressed is the content of \p original. A full disk isn't reported while the file is written,
/// so both are compared.
bool isFaithful(const QByteArray& compressed, const zvutil::ZvFilePath& original)
{
    return !compressed.isEmpty() && qUncompress(compressed) == contentOf(original);
}

/// Returns whether \p restored has the length that \p compressed states. Decompressing a damaged
/// file reports no error and gives an empty file, as an empty document does.
bool isRestored(const QByteArray& restored, const zvutil::ZvFilePath& compressed)
{
    QFile source(qtFileName(compressed));
    if (!source.open(QIODevice::ReadOnly))
        return false;
    const QByteArray length = source.read(lengthBytes);
    quint32 expected = 0;
    for (const char byte : length)
        expected = expected << 8U | static_cast<unsigned char>(byte);
    return length.size() == lengthBytes && restored.size() == static_cast<qint64>(expected);
}

} // namespace

CompressionRequest::CompressionRequest(Direction direction, const zvutil::ZvFilePath& source,
                                       const zvutil::ZvFilePath& target)
    : m_direction(direction)
    , m_source(source)
    , m_target(target)
{
}

void CompressionRequest::perform()
{
    const QString error = transfer();
    if (error.isEmpty())
        Q_EMIT completed();
    else
        Q_EMIT failed(error.toStdString());
}

/// Writes the target. Returns an empty text, or why it is as it was.
QString CompressionRequest::transfer() const
{
    try {
        const QByteArray content = transferred();
        QCoreApplication::processEvents();
        if (abort_requested())
            return tr("Cancelled.");
        host::saveFile(qtFileName(m_target).toStdString(), content.toStdString());
        return {};
    } catch (const FileError& error) {
        return error.reason();
    } catch (const zvutil::ZvFileException& exception) {
        return QString::fromUtf8(exception.what());
    } catch (const std::bad_alloc&) {
        return tr("There is not enough memory.");
    } catch (const std::exception& exception) {
        return QString::fromUtf8(exception.what());
    }
}

/// Returns the content of the target. Throws `FileError`, `ZvFileException` and `std::exception`.
QByteArray CompressionRequest::transferred() const
{
    // A folder of its own has room for the part without any file of the user being in the way.
    const QTemporaryDir folder(qtFileName(m_target) + QStringLiteral(".XXXXXX"));
    if (!folder.isValid())
        throw FileError(folder.errorString());
    const zvutil::ZvFilePath part = filePath(folder.filePath(QStringLiteral("part")));
    const bool compresses = m_direction == Direction::Compress;
    if (compresses)
        ZvCompression::compress(m_source, part, ZvCompressionType::Zlib, defaultLevel);
    else
        ZvCompression::decompress(m_source, part, ZvCompressionType::Zlib);
    QByteArray content = contentOf(part);
    if (compresses && !isFaithful(content, m_source))
        throw FileError(tr("The file was not written completely."));
    if (!compresses && !isRestored(content, m_source))
        throw FileError(
            tr("The file is not a compressed document, it is damaged, or the disk is full."));
    return content;
}

} // namespace workbench
