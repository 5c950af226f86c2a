// Any bytes as text in all four types: a conversion fails where the text says so and nowhere else,
// gives as many units as the text has, and leaves the text as it is.

#include <zvutil/ZvBasicString.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

using zvutil::ZvBasicString;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

template <typename C>
std::basic_string<C> unitsOf(const std::uint8_t* data, std::size_t size)
{
    std::basic_string<C> units(size / sizeof(C), C());
    std::memcpy(units.data(), data, units.size() * sizeof(C));
    return units;
}

template <typename C>
std::size_t count(const std::basic_string<C>& units, char32_t first, char32_t last)
{
    return static_cast<std::size_t>(std::count_if(units.begin(), units.end(), [=](C unit) {
        const auto value = static_cast<char32_t>(unit);
        return value >= first && value <= last;
    }));
}

/// How many bytes UTF-8 takes with each unit by itself.
template <typename C>
std::size_t bytesOf(const std::basic_string<C>& units)
{
    return count(units, 1, 0x7F) + 2 * count(units, 0x80, 0x7FF) + 3 * count(units, 0x800, 0xFFFF)
        + 4 * count(units, 0x10000, 0x10FFFF);
}

template <typename Convert>
bool isBad(Convert convert)
{
    try {
        convert();
        return false;
    } catch (const std::range_error& error) {
        require(std::strcmp(error.what(), "bad conversion") == 0);
        return true;
    }
}

template <typename C>
void checkConversions(const ZvBasicString<C>& text, bool bad)
{
    const std::basic_string<C> units = text.toStringType();
    require(isBad([&] { text.toString(); }) == bad);
    require(isBad([&] { text.toWString(); }) == bad);
    require(isBad([&] { text.toU16String(); }) == bad);
    require(isBad([&] { text.toU32String(); }) == bad);
    require(text.toStringType() == units && text.c_str() == units);
    if (bad)
        return;
    const std::u16string units16 = text.toU16String().toStringType();
    const std::wstring wide = text.toWString().toStringType();
    const std::u32string units32 = text.toU32String().toStringType();
    require(text.toString().toStringType().size() == bytesOf(units));
    require(units16.size() == units.size() + count(units, 0x10000, 0x10FFFF));
    require(std::equal(units16.begin(), units16.end(), wide.begin(), wide.end(),
                       [](char16_t a, wchar_t b) { return a == static_cast<char16_t>(b); }));
    require(std::u32string(units16.begin(), units16.end()) == units32);
    require(text.toU16String().toU16String().toStringType() == units16);
}

template <typename C>
void checkText(const std::basic_string<C>& source)
{
    const ZvBasicString<C> text(source);
    require(text == source && text == source.c_str() && text == ZvBasicString<C>(source.c_str()));
    require(text.toStringType().find(C()) == std::basic_string<C>::npos);
    const std::basic_string<C> twice = text.appended(text).toStringType();
    require(twice == text.toStringType() + text.toStringType());
    require((text.appended(text) == text) == twice.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = unitsOf<char>(data, size);
    const auto units16 = unitsOf<char16_t>(data, size);
    const auto units32 = unitsOf<char32_t>(data, size);
    const auto wide = unitsOf<wchar_t>(data, size);
    checkText(bytes);
    checkText(units16);
    checkText(units32);
    checkText(wide);

    const ZvBasicString<char> narrow(bytes);
    const std::string text = narrow.toStdString();
    checkConversions(narrow, std::any_of(text.begin(), text.end(), [](char c) {
                         return static_cast<unsigned char>(c) >= 0x80;
                     }));
    checkConversions(ZvBasicString<char16_t>(units16), false);
    const ZvBasicString<char32_t> codes(units32);
    checkConversions(codes, count(codes.toStringType(), 0x110000, 0xFFFFFFFF) > 0);
    const ZvBasicString<wchar_t> split(wide);
    require(count(split.toStringType(), 0x10000, 0xFFFFFFFF) == 0);
    checkConversions(split, false);
    return 0;
}
