#include <zvutil/uri.h>

#include "impl/paths/file_uri.h"
#include "impl/paths/path_text.h"

#include <algorithm>
#include <cstddef>

namespace zvutil::impl {

namespace {

constexpr std::string_view escapedBlank = "%20";

/// Makes \p target, which is empty, the normalised form of \p text.
void setNormalised(std::string& target, std::string_view text)
{
    const auto blanks = static_cast<std::size_t>(std::count(text.begin(), text.end(), ' '));
    target.resize(text.size() + blanks * (escapedBlank.size() - 1));
    char* out = target.data();
    for (const char c : text) {
        if (c == ' ')
            out = std::copy_n(escapedBlank.data(), escapedBlank.size(), out);
        else
            *out++ = c == '\\' ? '/' : c;
    }
}

/// Takes the components off the front of a text, one after the other.
class Scanner
{
public:
    explicit Scanner(std::string_view rest)
        : m_rest(rest)
    {
    }

    bool skip(std::string_view prefix)
    {
        // The first character decides most times, without a call.
        if (m_rest.empty() || m_rest.front() != prefix.front()
            || m_rest.substr(0, prefix.size()) != prefix)
            return false;
        m_rest.remove_prefix(prefix.size());
        return true;
    }

    std::string_view take(std::size_t count)
    {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    template <typename Predicate>
    std::string_view takeUntil(Predicate isEnd)
    {
        return take(static_cast<std::size_t>(std::find_if(m_rest.begin(), m_rest.end(), isEnd)
                                             - m_rest.begin()));
    }

    std::string_view rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

struct Scheme
{
    std::string_view prefix; ///< with its colon
    UriKind kind;
};

constexpr Scheme schemes[] = {
    {"https:", UriKind::Https},
    {"file:", UriKind::File},
    {"http:", UriKind::Http},
};

bool scanScheme(Scanner& scanner, uri_impl& parts)
{
    for (const Scheme& scheme : schemes) {
        const std::string_view rest = scanner.rest();
        if (!scanner.skip(scheme.prefix))
            continue;
        parts.scheme = rest.substr(0, scheme.prefix.size() - 1);
        parts.kind = scheme.kind;
        return true;
    }
    return false;
}

void scanAuthority(Scanner& scanner, uri_impl& parts)
{
    const std::string_view start = scanner.rest();
    // Wanted: the user part reaches to the first @ of all the rest, over any / ? and #.
    const std::size_t at = start.find('@');
    if (at != std::string_view::npos) {
        parts.userinfo = scanner.take(at);
        scanner.skip("@");
    }
    // Wanted: the host ends at : and / only, so a query without a path in front of it is host.
    parts.host = scanner.takeUntil([](char c) { return c == ':' || c == '/'; });
    if (scanner.skip(":"))
        parts.port = scanner.takeUntil([](char c) { return c < '0' || c > '9'; });
    parts.authority = start.substr(0, start.size() - scanner.rest().size());
}

void scanPath(Scanner& scanner, uri_impl& parts)
{
    parts.path = scanner.takeUntil([](char c) { return c == '?' || c == '#'; });
    if (scanner.skip("?"))
        parts.query = scanner.takeUntil([](char c) { return c == '#'; });
    if (scanner.skip("#"))
        parts.fragment = scanner.rest();
}

/// Splits as this expression would, in which no choice is ever taken back:
/// (file|http|https):(?://((?:([^@ ]*)@)?([^:/ ]*)(?::(\d*))?))?([^?# ]*)(?:\?([^# ]*))?(?:#([^ ]*))?
void split(uri_impl& parts)
{
    // Everything behind an inner NUL is text, but no part of the URI.
    Scanner scanner(std::string_view(parts.text).substr(0, parts.text.find('\0')));
    if (!scanScheme(scanner, parts))
        return;
    if (scanner.skip("//"))
        scanAuthority(scanner, parts);
    scanPath(scanner, parts);
}

} // namespace

std::unique_ptr<uri_impl> parse_uri(std::string_view text)
{
    auto result = std::make_unique<uri_impl>();
    setNormalised(result->text, text);
    split(*result);
    return result;
}

std::unique_ptr<uri_impl> parse_file_uri(const std::filesystem::path& path)
{
    return parse_uri(file_uri_text(path_text(path)));
}

} // namespace zvutil::impl
