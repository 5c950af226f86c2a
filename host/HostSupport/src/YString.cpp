#include <HostSupport/YString.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace {

char* duplicate(const char* text)
{
    const std::size_t bytes = std::strlen(text) + 1;
    void* copy = std::malloc(bytes);
    if (!copy)
        throw std::bad_alloc();
    return static_cast<char*>(std::memcpy(copy, text, bytes));
}

} // namespace

YString::YString(const char* text)
    : m_buffer(text ? duplicate(text) : nullptr)
{
}

YString::YString(const YString& other)
    : YString(other.m_buffer)
{
}

YString::YString(YString&& other) noexcept
    : m_buffer(std::exchange(other.m_buffer, nullptr))
{
}

YString::~YString()
{
    std::free(m_buffer);
}

YString& YString::operator=(const char* text)
{
    return *this = YString(text);
}

YString& YString::operator=(const YString& other)
{
    return *this = YString(other);
}

YString& YString::operator=(YString&& other) noexcept
{
    std::swap(m_buffer, other.m_buffer);
    return *this;
}

char* YString::detach()
{
    if (!m_buffer)
        return duplicate("");
    return std::exchange(m_buffer, nullptr);
}

const char* YString::c_str() const noexcept
{
    return m_buffer ? m_buffer : "";
}

std::size_t YString::size() const noexcept
{
    return std::strlen(c_str());
}
