#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include "impl/text/upper_case.h"

#include <locale>
#include <new>

namespace zvutil::experimental::string {

namespace {

// Only the facets for char and wchar_t exist in all standard libraries, and they suffice: the
// narrow one regards a char as an unsigned byte, and the wide one is the only other that knows
// letters.

/// A facet of the locale that is the global one at construction.
template <typename Facet>
class KeptFacet
{
public:
    typename Facet::char_type toupper(typename Facet::char_type unit) const
    {
        return m_facet.toupper(unit);
    }

private:
    std::locale m_locale;
    const Facet& m_facet = std::use_facet<Facet>(m_locale);
};

#if defined(__MINGW32__)

/// MinGW's wide facet calls the C library, which is slow, so keep its answers in a table.
template <>
class KeptFacet<std::ctype<wchar_t>>
{
public:
    wchar_t toupper(wchar_t unit) const { return static_cast<wchar_t>(m_upper(unit)); }

private:
    impl::upper_case m_upper{std::locale()};
};

#endif

/// The facet that the first comparison makes. Never destroyed, since static objects may compare in
/// their destructors.
template <typename Facet, typename C>
const KeptFacet<Facet>& keptFacet()
{
    alignas(KeptFacet<Facet>) static unsigned char place[sizeof(KeptFacet<Facet>)];
    static const KeptFacet<Facet>& kept = *new (place) KeptFacet<Facet>;
    return kept;
}

signed char upper(char unit, const KeptFacet<std::ctype<char>>& facet)
{
    // By contract: bytes are compared as signed values, even where char is unsigned, so a byte from
    // 0x80 on sorts before any letter. Callers sort by that order.
    return static_cast<signed char>(facet.toupper(unit));
}

char16_t upper(char16_t unit, const KeptFacet<std::ctype<wchar_t>>& facet)
{
    return static_cast<char16_t>(facet.toupper(static_cast<wchar_t>(unit)));
}

char32_t upper(wchar_t unit, const KeptFacet<std::ctype<wchar_t>>& facet)
{
    // Units are compared as unsigned values, even where wchar_t is signed.
    return static_cast<char32_t>(facet.toupper(unit));
}

char32_t upper(char32_t unit, const KeptFacet<std::ctype<char>>& facet)
{
    // By contract: a unit above 0xFF has no case, since the narrow facet knows bytes only.
    if (unit > 0xFF)
        return unit;
    return static_cast<unsigned char>(facet.toupper(static_cast<char>(unit)));
}

template <typename Facet, typename C>
int compareFolded(const C* a, const C* b, std::size_t n)
{
    if (n == 0)
        return 0;
    // By contract: the first comparison of a text that isn't empty fixes the locale for good, so
    // that equal texts stay equal.
    const KeptFacet<Facet>& facet = keptFacet<Facet, C>();
    for (std::size_t i = 0; i < n; ++i) {
        if (a[i] == b[i])
            continue;
        const auto x = upper(a[i], facet);
        const auto y = upper(b[i], facet);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}

} // namespace

template <>
int case_insensitive_char_traits<char>::compare(const char* a, const char* b, std::size_t n)
{
    return compareFolded<std::ctype<char>>(a, b, n);
}

template <>
int case_insensitive_char_traits<char16_t>::compare(const char16_t* a, const char16_t* b,
                                                    std::size_t n)
{
    return compareFolded<std::ctype<wchar_t>>(a, b, n);
}

template <>
int case_insensitive_char_traits<char32_t>::compare(const char32_t* a, const char32_t* b,
                                                    std::size_t n)
{
    return compareFolded<std::ctype<char>>(a, b, n);
}

template <>
int case_insensitive_char_traits<wchar_t>::compare(const wchar_t* a, const wchar_t* b,
                                                   std::size_t n)
{
    return compareFolded<std::ctype<wchar_t>>(a, b, n);
}

} // namespace zvutil::experimental::string
