#include <zvutil/ZvException.h>

namespace zvutil {

ZvException::ZvException() = default;

ZvException::ZvException(const ZvBasicString<char>& message)
    : m_message(message)
{
}

ZvException::ZvException(const ZvException& other) = default;

ZvException::ZvException(ZvException&& other) noexcept = default;

ZvException::~ZvException() = default;

ZvException& ZvException::operator=(const ZvException& other) = default;

ZvException& ZvException::operator=(ZvException&& other) noexcept = default;

const char* ZvException::what() const
{
    return m_message.c_str();
}

} // namespace zvutil
