#pragma once

#include <zvutil/ZvAbstractString.h>

#include <string>

class QString;

namespace libzvutil {

/// A wide text. A `wchar_t` holds one 16-bit unit, even where it has 32 bits: an input
/// value above 0xFFFF is split into its surrogate pair, and one above 0x10FFFF becomes U+FFFD.
///
/// `ZvWString` has no comparison and no assignment, on purpose: a text is made, appended to and read.
/// @since 0.1 @ingroup text
class ZVUTIL_EXPORT ZvWString : public ZvAbstractString
{
public:
    /// The empty text.
    ZvWString();
    /// Copies a text up to its first NUL.
    /// @param text must not be null
    ZvWString(const wchar_t* text);
    /// The same for a standard string.
    /// @param text counts up to its first NUL
    ZvWString(const std::wstring& text);

    /// Copies a text up to its first NUL.
    /// @param other must not have been moved from
    ZvWString(const ZvWString& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed
    ZvWString(ZvWString&& other) noexcept;
    /// Frees the text; what `c_str` returned ends with it.
    ~ZvWString() override;

    /// Appends a text up to its first NUL, after everything that this text holds.
    /// @param other may be this text
    ZvWString& operator+=(const ZvWString& other);
    /// The same for a text that ends in a NUL.
    /// @param text must not be null
    ZvWString& operator+=(const wchar_t* text);
    /// The same for a standard string.
    /// @param text counts up to its first NUL
    ZvWString& operator+=(const std::wstring& text);
    /// Appends one unit.
    /// @param unit may be a NUL
    ZvWString& operator+=(wchar_t unit);
    /// Appends what `QString::toStdWString` makes of a text: all its units, but for an unpaired
    /// surrogate U+FFFD where `wchar_t` has 32 bits.
    /// @param text counts up to its first NUL
    ZvWString& operator+=(const QString& text);

    /// @return the text followed by a NUL; valid until the text changes.
    const wchar_t* c_str() const;

private:
    ZvBasicString<wchar_t>& impl();
    const ZvBasicString<wchar_t>& impl() const;
};

static_assert(sizeof(ZvWString) == sizeof(ZvAbstractString));

} // namespace libzvutil
