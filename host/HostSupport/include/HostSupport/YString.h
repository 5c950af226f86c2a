#pragma once

#include <HostSupport/HostSupport_export.h>

#include <cstddef>

/// The host's string: NUL-ended UTF-8 text in one buffer from `malloc`.
///
/// An empty string may hold no buffer; `c_str()` never returns null all the same.
class HOSTSUPPORT_EXPORT YString
{
public:
    YString() noexcept = default;

    /// Copies \p text up to its NUL; null makes an empty string. Throws `std::bad_alloc`.
    YString(const char* text);
    YString(const YString& other);
    YString(YString&& other) noexcept;
    ~YString();

    YString& operator=(const char* text);
    YString& operator=(const YString& other);
    YString& operator=(YString&& other) noexcept;

    /// Hands the buffer over, never null; the caller frees it with `free`. The string is empty
    /// afterwards.
    [[nodiscard]] char* detach();

    const char* c_str() const noexcept;
    std::size_t size() const noexcept;
    bool isEmpty() const noexcept { return size() == 0; }

private:
    char* m_buffer = nullptr;
};

static_assert(sizeof(YString) == sizeof(char*));
