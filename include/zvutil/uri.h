#pragma once

#include <zvutil/basic_pimpl.h>
#include <zvutil/impl/uri_impl.h>

#include <string_view>

namespace zvutil {

/// A text, normalised and split into the components of a URI. Immutable except for moves.
///
/// Two characters are normalised: each `\` becomes `/`, each blank `%20`. Nothing else is escaped,
/// and nothing is ever unescaped, so that parsing a result again changes nothing. The schemes
/// `file`, `http` and `https`, in lower case, are split; any other text is kept, has empty
/// components and the kind `UriKind::None`. No text is refused.
///
/// The split is lexical and more generous than RFC 3986. The user part reaches to the first `@`
/// after `//`, over any `/`, `?` and `#`; the host reaches to the next `:` or `/`, over `?` and
/// `#`; a path may follow the port without a `/`. An inner NUL ends what is split, not the text.
///
/// Parsing takes two allocations and time linear in the length, on a stack of fixed depth. The only
/// failures are `std::bad_alloc` and that of the constructor from a path. The views are valid until
/// the object is assigned to or destroyed; after a move they belong to the new object.
/// @since 0.1 @ingroup paths
class uri : public basic_pimpl<impl::uri_impl>
{
public:
    /// The empty text, of kind `UriKind::None`.
    uri()
        : basic_pimpl(std::make_unique<impl::uri_impl>())
    {
    }

    /// Parses all of a text.
    /// @param text a URI, not a path
    explicit uri(const std::string& text)
        : basic_pimpl(impl::parse_uri(text))
    {
    }

    /// Parses a text up to its NUL.
    /// @param text must not be null
    explicit uri(const char* text)
        : basic_pimpl(impl::parse_uri(std::string_view(text)))
    {
    }

    /// Deleted, since the view would convert to a path. Write `uri(std::string(text))`.
    /// @param text would be taken for a path
    explicit uri(std::string_view text) = delete;

    /// Parses "file:/" followed by the path's text. **Wide text is a path as well**:
    /// `uri(L"http://x")` gives `file:/http://x`, so pass the text of a URI as narrow text. A
    /// relative path isn't made absolute, and of a UNC path's two leading separators nothing is
    /// left but slashes: `\\srv\x` gives `file:///srv/x`.
    ///
    /// The text is written as UTF-8, each 16-bit unit by itself, so a character above U+FFFF takes
    /// six bytes. Where paths are bytes, they have to be UTF-8: else throws `std::system_error`,
    /// `EILSEQ`.
    /// @param path the file's path, relative or absolute
    explicit uri(const std::filesystem::path& path)
        : basic_pimpl(impl::parse_file_uri(path))
    {
    }

    /// Takes text and views over; the other may then only be destroyed or assigned to.
    uri(uri&&) noexcept = default;
    /// Takes text and views over; the other may then only be destroyed or assigned to.
    uri& operator=(uri&&) noexcept = default;
    /// Frees the text; the views end with it.
    ~uri() override = default;

    /// @return the normalised text, including what follows a NUL.
    const std::string& text() const noexcept { return impl().text; }

    /// @return `file`, `http` or `https`.
    std::string_view scheme() const noexcept { return impl().scheme; }
    /// @return everything between `//` and the path: `user@host:port`.
    std::string_view authority() const noexcept { return impl().authority; }
    /// @return the user part, without its `@`.
    std::string_view userinfo() const noexcept { return impl().userinfo; }
    /// @return the host, up to the next `:` or `/`.
    std::string_view host() const noexcept { return impl().host; }
    /// @return the digits after the `:` of the host.
    std::string_view port() const noexcept { return impl().port; }
    /// @return the path, with its leading `/`, if any.
    std::string_view path() const noexcept { return impl().path; }
    /// @return the query, without its `?`.
    std::string_view query() const noexcept { return impl().query; }
    /// @return the fragment, without its `#`.
    std::string_view fragment() const noexcept { return impl().fragment; }
    /// @return the class of the scheme; never `UriKind::Unknown`.
    UriKind kind() const noexcept { return impl().kind; }
};

static_assert(sizeof(uri) == 2 * sizeof(void*));

} // namespace zvutil
