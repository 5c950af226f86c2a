#pragma once

#include <HostSupport/HostSupport_export.h>

#include <cstddef>

/// The host's string: NUL-ended UTF-8 text in one buffer from `malloc`.
///
/// An empty string may have no buffer; `c_str` doesn't return null even then.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT YString
{
public:
    /// The empty string, without a buffer.
    YString() noexcept = default;

    /// Copies a text up to its NUL. Throws `std::bad_alloc`.
    /// @param text UTF-8; null makes an empty string
    YString(const char* text);
    /// A deep copy. Throws `std::bad_alloc`.
    /// @param other the string to copy
    YString(const YString& other);
    /// Takes the buffer over.
    /// @param other empty afterwards
    YString(YString&& other) noexcept;
    /// Frees the buffer.
    ~YString();

    /// Copies a text up to its NUL. Throws `std::bad_alloc`.
    /// @param text UTF-8; null makes the string empty
    YString& operator=(const char* text);
    /// A deep copy. Throws `std::bad_alloc`, and changes nothing then.
    /// @param other the string to copy
    YString& operator=(const YString& other);
    /// Swaps the buffers.
    /// @param other has this string's buffer afterwards
    YString& operator=(YString&& other) noexcept;

    /// @return the buffer, never null, which the caller frees with `free`. The string is empty
    /// afterwards. Throws `std::bad_alloc` if there is no buffer and none can be allocated.
    [[nodiscard]] char* detach();

    /// @return the text, never null; valid until the string changes.
    const char* c_str() const noexcept;
    /// @return the number of bytes before the NUL; takes linear time.
    std::size_t size() const noexcept;
    /// @return whether the text is empty.
    bool isEmpty() const noexcept { return size() == 0; }

private:
    char* m_buffer = nullptr;
};

static_assert(sizeof(YString) == sizeof(char*));
