#include <zvutil/ZvCompression.h>

#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>

#include "impl/paths/path_text.h"

#include <QByteArray>
#include <QFile>

#include <limits>
#include <memory>

using zvutil::ZvBasicString;
using zvutil::ZvFileException;
using zvutil::ZvFilePath;

struct ZvCompression::ZvCompressionImpl
{
};

namespace {

/// The most bytes that a `QByteArray` holds, with some to spare for its header.
constexpr qint64 maxSize = std::numeric_limits<int>::max() - 64;

/// The most bytes that `qCompress` takes without a crash: it adds up the bytes and a hundredth of
/// them as an `int`.
constexpr qint64 maxContentSize = maxSize / 101 * 100;

void requireSize(qint64 size, qint64 limit, const ZvFilePath& file)
{
    if (size <= limit)
        return;
    const ZvBasicString<char> text = ZvBasicString<wchar_t>(file.c_str()).toString();
    throw ZvFileException(file, ZvBasicString<char>("File too large: ").appended(text));
}

/// Writes the result of \p convert for the bytes of \p source to \p target.
template <typename Convert>
void convertFile(const ZvFilePath& source, const ZvFilePath& target, qint64 limit, Convert convert)
{
    QFile in(zvutil::impl::native_file_name(source.c_str()));
    QFile out(zvutil::impl::native_file_name(target.c_str()));
    if (!in.open(QIODevice::ReadOnly))
        throw ZvFileException::cannotRead(source);
    requireSize(in.size(), limit, source);
    // By contract: open() truncates the target before anything is read, even if it is the source.
    // Nothing checks for one file in both places.
    if (!out.open(QIODevice::WriteOnly))
        throw ZvFileException::cannotWrite(target);
    const QByteArray content = in.readAll();
    // Check again: a device has no size before it is read.
    requireSize(content.size(), limit, source);
    // By contract: convertFile() ignores how many bytes write() took, so a full disk leaves a short
    // target and no error.
    out.write(convert(content));
}

} // namespace

ZvCompression::ZvCompression()
    : m_impl(std::make_unique<ZvCompressionImpl>())
{
}

ZvCompression::ZvCompression(const ZvCompression& /*other*/)
    : ZvCompression()
{
}

ZvCompression::ZvCompression(ZvCompression&& other) noexcept = default;

ZvCompression& ZvCompression::operator=(const ZvCompression& other)
{
    return *this = ZvCompression(other);
}

ZvCompression& ZvCompression::operator=(ZvCompression&& other) noexcept = default;

ZvCompression::~ZvCompression() = default;

void ZvCompression::compress(const ZvFilePath& source, const ZvFilePath& target,
                             ZvCompressionType type, int level)
{
    if (type != ZvCompressionType::Zlib)
        return;
    convertFile(source, target, maxContentSize,
                [level](const QByteArray& content) { return qCompress(content, level); });
}

void ZvCompression::decompress(const ZvFilePath& source, const ZvFilePath& target,
                               ZvCompressionType type)
{
    if (type != ZvCompressionType::Zlib)
        return;
    convertFile(source, target, maxSize,
                [](const QByteArray& packed) { return qUncompress(packed); });
}
