#pragma once

#include <zvutil/zvutil_export.h>

#include <string>
#include <utility>

namespace zvutil {

/// A universally unique identifier as text: a standard string with a type of its own.
///
/// The text isn't checked, so any text can be an identifier. A generated one has the form
/// `3F2504E0-4F89-41D3-9A0C-0305E82C3301`: 36 characters, the letters in upper case.
class uuid
{
public:
    /// Generates a new identifier, from `CoCreateGuid` on Windows and from the operating system's
    /// random source elsewhere, as a random identifier of version 4. There is no null identifier.
    ///
    /// Any thread may call this, without a lock; a forked child never repeats what its parent
    /// generates. Takes one allocation.
    ZVUTIL_EXPORT uuid();

    /// Keeps \p text as it is.
    explicit uuid(std::string text) noexcept
        : m_text(std::move(text))
    {
    }

    /// The text; valid as long as this object.
    const std::string& text() const noexcept { return m_text; }
    /// The text up to its end, followed by a NUL; valid as long as this object.
    const char* c_str() const noexcept { return m_text.c_str(); }

    /// Compares the texts byte for byte, so case counts.
    friend bool operator==(const uuid& a, const uuid& b) noexcept { return a.m_text == b.m_text; }
    /// The negation of `==`.
    friend bool operator!=(const uuid& a, const uuid& b) noexcept { return !(a == b); }

private:
    std::string m_text;
};

static_assert(sizeof(uuid) == sizeof(std::string));

} // namespace zvutil
