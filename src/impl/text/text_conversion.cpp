#include "impl/text/text_conversion.h"

#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace zvutil::impl {

namespace {

template <typename Target>
constexpr std::size_t max_code_length = std::is_same_v<Target, char> ? 4 : 2;

#if defined(__cpp_lib_string_resize_and_overwrite)

/// Converts units straight into \p target, as many as it has room for whatever they become: otherwise its space would
/// first be filled with zeros. Returns their number; they end before a unit that is no code.
template <typename Target, typename Traits, typename Source>
std::size_t append_in_place(std::basic_string<Target, Traits>& target,
                            std::basic_string_view<Source> source)
{
    const std::size_t before = target.size();
    const std::size_t room = target.capacity() - before;
    source = source.substr(0, room / max_code_length<Target>);
    const Source* end = nullptr;
    target.resize_and_overwrite(before + room, [before, source, &end](Target* text, std::size_t) {
        const converted_range<Target, Source> converted =
            write_converted(text + before, source.data(), source.data() + source.size());
        end = converted.source;
        return static_cast<std::size_t>(converted.target - text);
    });
    return static_cast<std::size_t>(end - source.data());
}

#else

/// Strings of this standard can't be written to without being filled first.
template <typename Target, typename Traits, typename Source>
std::size_t append_in_place(std::basic_string<Target, Traits>& /*target*/,
                            std::basic_string_view<Source> /*source*/)
{
    return 0;
}

#endif

/// Returns how long a text becomes when \p converted units have been made of \p units.
std::size_t likely_size(std::size_t text, std::size_t converted, std::size_t units)
{
    // A little more, as a text that becomes longer than that is copied once more; one of ASCII becomes no longer.
    return converted == units ? text : text / units * (converted + converted / 16 + 1);
}

} // namespace

template <typename Target, typename Traits, typename Source>
void append_converted(std::basic_string<Target, Traits>& target,
                      std::basic_string_view<Source> source)
{
    constexpr std::size_t block_size = 512;
    std::array<Target, max_code_length<Target> * block_size> buffer;
    while (!source.empty()) {
        const std::basic_string_view<Source> block = source.substr(0, block_size);
        const converted_range<Target, Source> converted =
            write_converted(buffer.data(), block.data(), block.data() + block.size());
        const std::size_t size = static_cast<std::size_t>(converted.target - buffer.data());
        target.append(buffer.data(), size);
        if (converted.source != block.data() + block.size())
            throw std::range_error("bad conversion");
        source.remove_prefix(block.size());
        if (source.size() <= block_size)
            continue;
        if (target.capacity() - target.size() < source.size())
            target.reserve(target.size() + likely_size(source.size(), size, block.size()));
        source.remove_prefix(append_in_place(target, source));
    }
}

template <typename Target>
using text_of =
    std::basic_string<Target, experimental::string::case_insensitive_char_traits<Target>>;

#define ZVUTIL_CONVERSIONS_FROM(Source)                                                            \
    template void append_converted(text_of<char>&, std::basic_string_view<Source>);                \
    template void append_converted(text_of<char16_t>&, std::basic_string_view<Source>);            \
    template void append_converted(text_of<char32_t>&, std::basic_string_view<Source>);            \
    template void append_converted(text_of<wchar_t>&, std::basic_string_view<Source>)

ZVUTIL_CONVERSIONS_FROM(char);
ZVUTIL_CONVERSIONS_FROM(char16_t);
ZVUTIL_CONVERSIONS_FROM(char32_t);
ZVUTIL_CONVERSIONS_FROM(wchar_t);

#undef ZVUTIL_CONVERSIONS_FROM

template void append_converted(std::string&, std::basic_string_view<char16_t>);
template void append_converted(std::string&, std::basic_string_view<char32_t>);
template void append_converted(std::string&, std::basic_string_view<wchar_t>);
template void append_converted(std::u16string&, std::basic_string_view<char>);

} // namespace zvutil::impl
