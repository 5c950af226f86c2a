#pragma once

#include <zvutil/zvutil_export.h>

#include <string>
#include <utility>

namespace zvutil {

/// A universally unique identifier as text: a standard string with a type of its own.
///
/// The text isn't checked, so any text can be an identifier. A generated one has the form
/// `3F2504E0-4F89-41D3-9A0C-0305E82C3301`: 36 characters, the letters in upper case.
/// @since 0.1 @ingroup paths
class uuid
{
public:
    /// Generates a new identifier, from `CoCreateGuid` on Windows and from the operating system's
    /// random source elsewhere, as a random identifier of version 4. There is no null identifier.
    ///
    /// Any thread may call this, without a lock; a forked child never repeats what its parent
    /// generates. Takes one allocation.
    ZVUTIL_EXPORT uuid();

    /// Keeps a text as it is.
    /// @param text isn't checked
    explicit uuid(std::string text) noexcept
        : m_text(std::move(text))
    {
    }

    /// @return the text; valid as long as this object.
    const std::string& text() const noexcept { return m_text; }
    /// @return the text up to its end, followed by a NUL; valid as long as this object.
    const char* c_str() const noexcept { return m_text.c_str(); }

    /// @return whether the texts are the same, byte for byte; case counts.
    /// @param a any identifier
    /// @param b any identifier
    friend bool operator==(const uuid& a, const uuid& b) noexcept { return a.m_text == b.m_text; }
    /// @return the negation of `==`.
    /// @param a any identifier
    /// @param b any identifier
    friend bool operator!=(const uuid& a, const uuid& b) noexcept { return !(a == b); }

private:
    std::string m_text;
};

static_assert(sizeof(uuid) == sizeof(std::string));

} // namespace zvutil
