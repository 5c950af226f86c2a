#pragma once

#include <zvutil/ZvBasicString.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/uri.h>
#include <zvutil/zvutil_export.h>

#include <string>
#include <string_view>

namespace zvutil {
class ZvFilePath;
}

/// A URI as a value: the handle around a `zvutil::uri`, which tells what is normalised and how the
/// text is split. No text is refused. The components are to be had through `toURI` alone, and there
/// is no way back from a URI to a path, on purpose.
///
/// Copies share nothing; a copy parses the text again, which changes nothing. A move allocates
/// nothing and throws nothing. A moved-from URI may only be destroyed or assigned to. Making and
/// setting take linear time and fail for lack of memory only, and then leave the URI as it was. Two
/// threads may use two URIs at once.
class ZVUTIL_EXPORT ZvURI
{
public:
    /// The empty text.
    ZvURI();
    /// The same as `set`; a `std::string` ends at its first NUL.
    ZvURI(const char* text);
    ZvURI(const std::string& text);
    ZvURI(const zvutil::ZvBasicString<char>& text);
    /// Wide text makes a path, too: `ZvURI(L"http://x")` is `file:/http://x`, so text of a URI
    /// comes in narrow.
    ZvURI(const zvutil::ZvFilePath& path);
    /// Not there: it would be a path. Say `ZvURI(std::string(text))` for a text.
    ZvURI(std::string_view text) = delete;
    /// From the text of \p uri up to its first NUL.
    ZvURI(const zvutil::uri& uri);

    ZvURI(const ZvURI& other);
    ZvURI(ZvURI&& other) noexcept;
    /// Writes into the implementation that is there; a moved-from URI gets a new one, here and by
    /// `set`.
    ZvURI& operator=(const ZvURI& other);
    ZvURI& operator=(ZvURI&& other) noexcept;
    virtual ~ZvURI();

    /// Normalises \p text, which must not be null. No scheme is put in front: `C:\a b` gives
    /// `C:/a%20b`.
    void set(const char* text);
    void set(const zvutil::ZvBasicString<char>& text);

    /// The file URI of \p path up to its first NUL: "file:/" and the path's text, whatever that
    /// begins with. `C:\a b` gives `file:/C:/a%20b`, `\\srv\x` gives `file:///srv/x`. Each 16-bit
    /// unit is written as UTF-8 by itself; so a character above U+FFFF takes six bytes.
    ///
    /// The host's script function `PathToURI` gives another text for the same path. Wide text makes a
    /// path here as well.
    void set(const zvutil::ZvFilePath& path);
    /// Not there, as the constructor.
    void set(std::string_view text) = delete;

    void set(const ZvURI& other);

    /// Compares the texts byte for byte: case counts, and spellings that mean the same, such as
    /// `file:/x` and `file:///x`, differ.
    bool operator==(const ZvURI& other) const;
    bool operator!=(const ZvURI& other) const;

    /// The normalised text; valid until the URI is set, assigned to or destroyed.
    const char* c_str() const;
    zvutil::ZvBasicString<char> toString() const;

    /// A new URI that is split into its components.
    zvutil::uri toURI() const;

private:
    struct ZvURIImpl;

    zvutil::basic_pimpl<ZvURIImpl> m_impl;
};

static_assert(sizeof(ZvURI) == 3 * sizeof(void*));
