#pragma once

#include <HostSupport/HostSupport_export.h>

#include <cstddef>

/// The host's string: NUL-ended UTF-8 text in one buffer from `malloc`.
///
/// An empty string may have no buffer; `c_str` doesn't return null even then.
class HOSTSUPPORT_EXPORT YString
{
public:
    /// The empty string, without a buffer.
    YString() noexcept = default;

    /// Copies \p text up to its NUL; null makes an empty string. Throws `std::bad_alloc`.
    YString(const char* text);
    /// A deep copy. Throws `std::bad_alloc`.
    YString(const YString& other);
    /// Takes the buffer over; \p other is empty afterwards.
    YString(YString&& other) noexcept;
    /// Frees the buffer.
    ~YString();

    /// Copies \p text up to its NUL; null makes the string empty. Throws `std::bad_alloc`.
    YString& operator=(const char* text);
    /// A deep copy. Throws `std::bad_alloc`, and changes nothing then.
    YString& operator=(const YString& other);
    /// Swaps the buffers.
    YString& operator=(YString&& other) noexcept;

    /// Returns the buffer, never null, which the caller frees with `free`. The string is empty
    /// afterwards. Throws `std::bad_alloc` if there is no buffer and none can be allocated.
    [[nodiscard]] char* detach();

    /// The text, never null; valid until the string changes.
    const char* c_str() const noexcept;
    /// The number of bytes before the NUL; takes linear time.
    std::size_t size() const noexcept;
    /// Whether the text is empty.
    bool isEmpty() const noexcept { return size() == 0; }

private:
    char* m_buffer = nullptr;
};

static_assert(sizeof(YString) == sizeof(char*));
