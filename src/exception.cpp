#include <zvutil/exception.h>

#include <sstream>

namespace zvutil {

namespace {

std::string joined(const char* text, const std::string& detail)
{
    std::ostringstream stream;
    stream << text << detail;
    return stream.str();
}

} // namespace

exception::exception(const char* text, const std::string& detail)
    : m_message(joined(text, detail)) // NOLINT(bugprone-throw-keyword-missing): holds the text
{
}

exception::exception(const exception& other) noexcept = default;

exception::~exception() = default;

const char* exception::what() const noexcept
{
    return m_message.what();
}

} // namespace zvutil
