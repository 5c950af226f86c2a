#pragma once

#include <zvutil/ZvAbstractString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <string>

class QString;

namespace libzvutil {

/// A narrow text: UTF-8 towards Qt, bytes to everybody else. Comparison ignores case, that of single
/// bytes.
class ZVUTIL_EXPORT ZvString : public ZvAbstractString
{
public:
    ZvString();
    /// Copies \p text, which must not be null, up to its NUL.
    ZvString(const char* text);

    /// Copies the text of \p other up to its first NUL.
    ZvString(const ZvString& other);
    ZvString(ZvString&& other) noexcept;
    /// Unlike construction, takes the whole text over, NULs included. It is written into the
    /// implementation that is there; a moved-from text gets a new one.
    ZvString& operator=(const ZvString& other);
    ZvString& operator=(ZvString&& other) noexcept;
    ~ZvString() override;

    /// Appends a text, which may be this one, up to its first NUL, behind all that this one holds.
    ZvString& operator+=(const ZvString& other);
    ZvString& operator+=(const char* text);
    ZvString&
    operator+=(const std::basic_string<
               char, zvutil::experimental::string::case_insensitive_char_traits<char>>& text);
    /// Appends one unit, also a NUL.
    ZvString& operator+=(char unit);
    /// Appends the UTF-8 form of \p text up to its first NUL; an unpaired surrogate becomes what
    /// `QString::toUtf8` makes of it.
    ZvString& operator+=(const QString& text);

    /// -1, 0 or 1, whether this text comes before the other, is equal to it or comes behind it: by
    /// `case_insensitive_char_traits<char>::compare` over the shorter length, then by the length.
    /// All units of both count, NULs included, but \p text ends at its first one.
    int compare(const ZvString& other) const;
    int compare(const char* text) const;

    /// The text with a NUL behind it; valid until the text changes.
    const char* c_str() const;
    /// The text up to the first NUL, read as UTF-8; a sequence that isn't becomes U+FFFD.
    QString toQString() const;

private:
    ZvBasicString<char>& impl();
    const ZvBasicString<char>& impl() const;
};

static_assert(sizeof(ZvString) == sizeof(ZvAbstractString));

} // namespace libzvutil
