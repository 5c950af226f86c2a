#pragma once

#include <zvutil/ZvAbstractString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <string>

class QString;

namespace libzvutil {

/// A narrow text: UTF-8 for Qt, bytes for everything else. Comparison ignores the case of single
/// bytes.
/// @since 0.1 @ingroup text
class ZVUTIL_EXPORT ZvString : public ZvAbstractString
{
public:
    /// The empty text.
    ZvString();
    /// Copies a text up to its NUL.
    /// @param text must not be null
    ZvString(const char* text);

    /// Copies a text up to its first NUL.
    /// @param other must not have been moved from
    ZvString(const ZvString& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvString(ZvString&& other) noexcept;
    /// Unlike construction, copies the whole text, NULs included, into the implementation that this
    /// text has; a moved-from text gets a new one.
    /// @param other must not have been moved from
    ZvString& operator=(const ZvString& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed or assigned to
    ZvString& operator=(ZvString&& other) noexcept;
    /// Frees the text; what `c_str` returned ends with it.
    ~ZvString() override;

    /// Appends a text up to its first NUL, after everything that this text holds.
    /// @param other may be this text
    ZvString& operator+=(const ZvString& other);
    /// The same for a text that ends in a NUL.
    /// @param text must not be null
    ZvString& operator+=(const char* text);
    /// The same for a standard string.
    /// @param text counts up to its first NUL
    ZvString&
    operator+=(const std::basic_string<
               char, zvutil::experimental::string::case_insensitive_char_traits<char>>& text);
    /// Appends one unit.
    /// @param unit may be a NUL
    ZvString& operator+=(char unit);
    /// Appends the UTF-8 form of a text.
    /// @param text counts up to its first NUL; an unpaired surrogate becomes what `QString::toUtf8`
    /// makes of it
    ZvString& operator+=(const QString& text);

    /// @return -1, 0 or 1 if this text comes before the other, equals it or comes after it: by
    /// `case_insensitive_char_traits<char>::compare` over the shorter length, then by the length.
    /// All units of both count, NULs included.
    /// @param other must not have been moved from
    int compare(const ZvString& other) const;
    /// @return the same for a text that ends at its first NUL.
    /// @param text must not be null
    int compare(const char* text) const;

    /// @return the text followed by a NUL; valid until the text changes.
    const char* c_str() const;
    /// @return the text up to the first NUL, read as UTF-8; a sequence that isn't becomes U+FFFD.
    QString toQString() const;

private:
    ZvBasicString<char>& impl();
    const ZvBasicString<char>& impl() const;
};

static_assert(sizeof(ZvString) == sizeof(ZvAbstractString));

} // namespace libzvutil
