#include <zvutil/ZvFileException.h>

#include "impl/paths/path_text.h"

namespace zvutil {

namespace {

ZvFileException failure(const char* sentence, const ZvFilePath& path)
{
    const ZvBasicString<char> text = ZvBasicString<wchar_t>(path.c_str()).toString();
    return {path, ZvBasicString<char>(sentence).appended(text)};
}

} // namespace

ZvFileException::ZvFileException() = default;

ZvFileException::ZvFileException(const ZvFilePath& path)
    : m_path(path)
{
}

ZvFileException::ZvFileException(const ZvFilePath& path, const ZvBasicString<char>& message)
    : ZvException(message)
    , m_path(path)
{
}

ZvFileException::ZvFileException(const std::filesystem::filesystem_error& error)
    : ZvException(ZvBasicString<char>(error.what()))
    // any_path_text() doesn't throw, unlike ZvFilePath's own constructor for a name that isn't
    // text: that exception would replace this one and its message.
    , m_path(impl::any_path_text(error.path1()))
{
}

ZvFileException::ZvFileException(const ZvFileException& other) = default;

ZvFileException::ZvFileException(ZvFileException&& other) noexcept = default;

ZvFileException::~ZvFileException() = default;

ZvFileException& ZvFileException::operator=(const ZvFileException& other) = default;

ZvFileException& ZvFileException::operator=(ZvFileException&& other) noexcept = default;

const ZvFilePath& ZvFileException::path() const
{
    return m_path;
}

ZvFileException ZvFileException::notFound(const ZvFilePath& path)
{
    return failure("File not found: ", path);
}

ZvFileException ZvFileException::cannotRead(const ZvFilePath& path)
{
    return failure("Cannot open file for reading: ", path);
}

ZvFileException ZvFileException::cannotWrite(const ZvFilePath& path)
{
    return failure("Cannot open file for writing: ", path);
}

} // namespace zvutil
