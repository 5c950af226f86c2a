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

/// A URI as a value: the handle around a `zvutil::uri`, whose comment says what is normalised and how
/// the text is split. No text is refused. Only `toURI` gives the components, and a URI can't be
/// converted back to a path, on purpose.
///
/// Copies share nothing; a copy parses the text again, which changes nothing. A move allocates
/// nothing and throws nothing. A moved-from URI may only be destroyed, assigned to or set.
/// Construction and `set` take linear time and fail only for lack of memory, which leaves the URI
/// as it was. Two threads may use two URIs at once.
/// @since 0.1 @ingroup paths
class ZVUTIL_EXPORT ZvURI
{
public:
    /// The empty text.
    ZvURI();
    /// The same as `set`.
    /// @param text must not be null
    ZvURI(const char* text);
    /// The same for a standard string.
    /// @param text counts up to its first NUL
    ZvURI(const std::string& text);
    /// The same for a text of the library.
    /// @param text a URI, not a path
    ZvURI(const zvutil::ZvBasicString<char>& text);
    /// The file URI of a path, see `set`. Wide text makes a path, too: `ZvURI(L"http://x")` is
    /// `file:/http://x`, so pass the text of a URI as narrow text.
    /// @param path counts up to its first NUL
    ZvURI(const zvutil::ZvFilePath& path);
    /// Deleted, since the view would convert to a path. Write `ZvURI(std::string(text))`.
    /// @param text would be taken for a path
    ZvURI(std::string_view text) = delete;
    /// Parses the text of a URI again.
    /// @param uri counts up to its first NUL
    ZvURI(const zvutil::uri& uri);

    /// Parses the text again.
    /// @param other must not have been moved from
    ZvURI(const ZvURI& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed, assigned to or set
    ZvURI(ZvURI&& other) noexcept;
    /// Parses the text again; this URI may have been moved from, as for `set`.
    /// @param other must not have been moved from
    ZvURI& operator=(const ZvURI& other);
    /// Takes over what the other object holds.
    /// @param other may then only be destroyed, assigned to or set
    ZvURI& operator=(ZvURI&& other) noexcept;
    /// Frees the text; what `c_str` returned ends with it.
    virtual ~ZvURI();

    /// Normalises a text. No scheme is added: `C:\a b` gives `C:/a%20b`.
    /// @param text must not be null
    void set(const char* text);
    /// The same for a text of the library.
    /// @param text a URI, not a path
    void set(const zvutil::ZvBasicString<char>& text);

    /// Makes the file URI of a path: "file:/" followed by the path's text, whatever that begins
    /// with. `C:\a b` gives `file:/C:/a%20b`, `\\srv\x` gives `file:///srv/x`. Each 16-bit unit is
    /// written as UTF-8 by itself; so a character above U+FFFF takes six bytes.
    ///
    /// The host's script function `PathToURI` gives another text for the same path. Wide text makes
    /// a path here as well.
    /// @param path counts up to its first NUL
    void set(const zvutil::ZvFilePath& path);
    /// Deleted, as the constructor.
    /// @param text would be taken for a path
    void set(std::string_view text) = delete;

    /// Parses the text of another URI again.
    /// @param other must not have been moved from
    void set(const ZvURI& other);

    /// @return whether the texts are the same, byte for byte: case counts, and spellings that mean
    /// the same, such as `file:/x` and `file:///x`, differ.
    /// @param other must not have been moved from
    bool operator==(const ZvURI& other) const;
    /// @return the negation of `==`.
    /// @param other must not have been moved from
    bool operator!=(const ZvURI& other) const;

    /// @return the normalised text; valid until the URI is set, assigned to or destroyed.
    const char* c_str() const;
    /// @return a copy of the normalised text up to its first NUL.
    zvutil::ZvBasicString<char> toString() const;

    /// @return a new URI that is split into its components.
    zvutil::uri toURI() const;

private:
    struct ZvURIImpl;

    zvutil::basic_pimpl<ZvURIImpl> m_impl;
};

static_assert(sizeof(ZvURI) == 3 * sizeof(void*));
