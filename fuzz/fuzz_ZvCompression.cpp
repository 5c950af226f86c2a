// Any bytes as a compressed file: the target holds what Qt makes of them, and what is there can be
// compressed and read back.

#include "support/files.h"

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFilePath.h>

#include <QByteArray>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

using zvfuzz::content;
using zvfuzz::require;
using zvfuzz::write;

namespace {

zvutil::ZvFilePath path(const QString& name)
{
    return {name.toStdWString()};
}

/// Limits what a header claims to 1 MB, as Qt sets so much aside at once.
QByteArray tamed(QByteArray bytes)
{
    if (bytes.size() >= 2) {
        bytes[0] = 0;
        bytes[1] = char(bytes[1] & 0x0F);
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir dir;
    static const QString source = dir.filePath(QStringLiteral("source"));
    static const QString target = dir.filePath(QStringLiteral("target"));
    static const QString packed = dir.filePath(QStringLiteral("packed"));

    const QByteArray bytes =
        tamed(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    write(source, bytes);
    ZvCompression::decompress(path(source), path(target), ZvCompressionType::Zlib);
    require(content(target) == qUncompress(bytes));

    ZvCompression::compress(path(source), path(packed), ZvCompressionType::Zlib,
                            size > 0 ? data[0] % 12 - 1 : -1);
    ZvCompression::decompress(path(packed), path(target), ZvCompressionType::Zlib);
    require(content(target) == bytes);
    return 0;
}
