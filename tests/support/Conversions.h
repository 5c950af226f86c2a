#pragma once

#include "support/TextOracle.h"

#include <zvutil/ZvBasicString.h>

#include <QByteArray>

#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace zvtest {

/// What \p convert returns; nothing if it throws the one exception that it may throw.
template <typename Convert>
auto unlessBad(Convert convert) -> std::optional<decltype(convert())>
{
    try {
        return convert();
    } catch (const std::range_error& error) {
        if (std::string(error.what()) != "bad conversion")
            throw;
        return std::nullopt;
    }
}

template <typename Target, typename Source>
std::optional<std::basic_string<Target>> converted(const zvutil::ZvBasicString<Source>& text)
{
    return unlessBad([&] {
        if constexpr (std::is_same_v<Target, char>)
            return text.toString().toStringType();
        else if constexpr (std::is_same_v<Target, wchar_t>)
            return text.toWString().toStringType();
        else if constexpr (std::is_same_v<Target, char16_t>)
            return text.toU16String().toStringType();
        else
            return text.toU32String().toStringType();
    });
}

template <typename Target, typename Source>
QByteArray disagreementTowards(const char* name, const std::basic_string<Source>& units)
{
    const auto actual = converted<Target>(zvutil::ZvBasicString<Source>(units));
    const auto expected = convertedByOracle<Target>(units);
    if (actual == expected)
        return {};
    return name + QByteArray(" of ") + hex(units) + "is " + hex(actual) + "instead of "
        + hex(expected);
}

/// Empty if the library and the tables agree on all that \p units, which hold no NUL and are 16-bit
/// units if they are wide, can be converted to.
template <typename Source>
QByteArray disagreement(const std::basic_string<Source>& units)
{
    QByteArray result = disagreementTowards<char>("toString", units);
    if (result.isEmpty())
        result = disagreementTowards<wchar_t>("toWString", units);
    if (result.isEmpty())
        result = disagreementTowards<char16_t>("toU16String", units);
    if (result.isEmpty())
        result = disagreementTowards<char32_t>("toU32String", units);
    const zvutil::ZvBasicString<Source> text(units);
    const auto narrow = unlessBad([&] { return text.toStdString(); });
    std::optional<std::string> expected = encoded(units);
    if constexpr (std::is_same_v<Source, char>)
        expected = units;
    if (result.isEmpty() && narrow != expected)
        result = "toStdString of " + hex(units) + "is " + hex(narrow);
    if (result.isEmpty() && text.toStringType() != units)
        result = "the text " + hex(units) + "was changed";
    return result;
}

} // namespace zvtest
