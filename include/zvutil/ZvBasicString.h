#pragma once

#include <zvutil/basic_pimpl.h>
#include <zvutil/impl/template_export.h>

#include <string>

namespace zvutil {

/// A text that crosses module boundaries: a handle of fixed size, for `char`, `char16_t`,
/// `char32_t` and `wchar_t`. A `wchar_t` holds one 16-bit unit, even where it has 32 bits: an
/// input value above 0xFFFF is split into its surrogate pair, and one above 0x10FFFF becomes U+FFFD.
///
/// Equality ignores case. There is no order and no hash, and `operator!=` is left out on purpose.
/// The text never holds a NUL: any input ends at its first one.
///
/// Copies share nothing. A handle takes one allocation for its implementation, and one for a text
/// that is too long to lie in it; a move takes none and throws nothing. A moved-from string may
/// only be destroyed or assigned to. Two threads may use two strings at once.
///
/// All four conversions, including the one to the own type, pass through UTF-8 and have its limits.
/// From
/// - `char` only 7-bit text converts: a byte at or above 0x80 fails, whether the text is UTF-8 or
/// not;
/// - `char16_t` and `wchar_t` each unit is converted by itself, a surrogate like any other: nothing
///   fails, and in UTF-8 a surrogate pair takes six bytes;
/// - `char32_t` a unit above 0x10FFFF fails, and surrogates are units like any other.
///
/// Towards 16 and also 32-bit units a code point above 0xFFFF becomes two units, its surrogate
/// pair. A conversion that fails throws `std::range_error` with the text "bad conversion" and
/// leaves the string as it is. A conversion takes linear time and the allocations of the new
/// string.
///
/// Operations that make text throw `std::bad_alloc`.
/// @since 0.1 @ingroup text
template <typename C>
class ZvBasicString
{
public:
    /// The empty text.
    ZvBasicString();
    /// Copies a text up to its NUL.
    /// @param text must not be null
    ZvBasicString(const C* text);
    /// Copies a text up to its first NUL, not up to its size.
    /// @param text isn't kept
    ZvBasicString(const std::basic_string<C>& text);

    /// A deep copy.
    /// @param other must not have been moved from
    ZvBasicString(const ZvBasicString& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvBasicString(ZvBasicString&& other) noexcept;
    /// Copies the text into the implementation that this string has; a moved-from string gets a new
    /// one.
    /// @param other must not have been moved from
    ZvBasicString& operator=(const ZvBasicString& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvBasicString& operator=(ZvBasicString&& other) noexcept;
    /// Frees the text; what `c_str` returned ends with it.
    virtual ~ZvBasicString();

    /// @return whether the texts have the same number of units and are equal except for case, by
    /// `case_insensitive_char_traits<C>::compare`. Texts that differ in length are unequal without
    /// a look at their units. The other text ends at its first NUL.
    /// @param other must not have been moved from
    bool operator==(const ZvBasicString& other) const;
    /// @return the same for a standard string, up to its first NUL.
    /// @param other counts up to its first NUL
    bool operator==(const std::basic_string<C>& other) const;
    /// @return the same for a text that ends in a NUL.
    /// @param other must not be null
    bool operator==(const C* other) const;

    /// Appends a text.
    /// @param other may be this string
    /// @return this string
    ZvBasicString& append(const ZvBasicString& other);
    /// @return a new string: this text followed by the other.
    /// @param other may be this string
    ZvBasicString appended(const ZvBasicString& other) const;

    /// @return the text followed by a NUL; valid until the string changes.
    const C* c_str() const;
    /// @return the same as `c_str`.
    const C* data() const;

    /// @return the text as a standard string. Nothing is converted, so this never fails.
    std::basic_string<C> toStringType() const;
    /// @return for `char` the bytes as they are, which never fails, and for the others the bytes of
    /// `toString()`.
    std::string toStdString() const;

    /// @return the text in UTF-8, each unit by itself; throws `std::range_error` as described
    /// above.
    ZvBasicString<char> toString() const;
    /// @return the text in 16-bit units; throws `std::range_error` as described above.
    ZvBasicString<wchar_t> toWString() const;
    /// @return the text in 16-bit units; throws `std::range_error` as described above.
    ZvBasicString<char16_t> toU16String() const;
    /// @return the text in units of 32 bits that hold one 16-bit unit each; throws
    /// `std::range_error` as described above.
    ZvBasicString<char32_t> toU32String() const;

private:
    struct ZvBasicStringImpl;
    template <typename>
    friend class ZvBasicString;

    basic_pimpl<ZvBasicStringImpl> m_impl;
};

extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicString<char>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicString<char16_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicString<char32_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicString<wchar_t>;

static_assert(sizeof(ZvBasicString<char>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicString<char16_t>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicString<char32_t>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicString<wchar_t>) == 3 * sizeof(void*));

} // namespace zvutil
