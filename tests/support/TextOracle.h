#pragma once

#include <QByteArray>
#include <QTest>

#include <optional>
#include <string>
#include <type_traits>

namespace zvtest {

/// The two tables of the conversions, step by step and unit by unit, as slow and plain as they
/// read.

/// Step 1: the text as UTF-8; nothing if it fails.
template <typename Source>
std::optional<std::string> encoded(const std::basic_string<Source>& text)
{
    std::string bytes;
    for (const Source unit : text) {
        const bool narrow = std::is_same_v<Source, char>;
        const long long value =
            narrow ? static_cast<signed char>(unit) : static_cast<long long>(unit);
        const auto tail = [value](int shift) {
            return static_cast<char>(0x80 + (value >> shift) % 64);
        };
        if (value < 0 || value > 0x10FFFF)
            return std::nullopt;
        if (value <= 0x7F)
            bytes += static_cast<char>(value);
        else if (value <= 0x7FF)
            bytes.append({static_cast<char>(0xC0 + value / 64), tail(0)});
        else if (value <= 0xFFFF)
            bytes.append({static_cast<char>(0xE0 + value / 4096), tail(6), tail(0)});
        else
            bytes.append({static_cast<char>(0xF0 + value / 262144), tail(12), tail(6), tail(0)});
    }
    return bytes;
}

/// Step 2: \p bytes, which step 1 has written, in 16-bit units, one per unit of the target.
template <typename Target>
std::basic_string<Target> decoded(const std::string& bytes)
{
    std::basic_string<Target> units;
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned lead = static_cast<unsigned char>(bytes[i++]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        unsigned value = more == 0 ? lead : lead % (64U >> more);
        for (int k = 0; k < more; ++k)
            value = value * 64 + static_cast<unsigned char>(bytes.at(i++)) % 64;
        if (value > 0xFFFF) {
            units += static_cast<Target>(0xD800 + (value - 0x10000) / 1024);
            units += static_cast<Target>(0xDC00 + (value - 0x10000) % 1024);
        } else {
            units += static_cast<Target>(value);
        }
    }
    return units;
}

template <typename Target, typename Source>
std::optional<std::basic_string<Target>> convertedByOracle(const std::basic_string<Source>& text)
{
    std::optional<std::string> bytes = encoded(text);
    if (!bytes)
        return std::nullopt;
    if constexpr (std::is_same_v<Target, char>)
        return bytes;
    else
        return decoded<Target>(*bytes);
}

/// The units in hexadecimal, to be read in a failure.
template <typename C>
QByteArray hex(const std::basic_string<C>& text)
{
    QByteArray result;
    for (const C unit : text) {
        const char32_t value = std::is_same_v<C, char> ? static_cast<unsigned char>(unit)
                                                       : static_cast<char32_t>(unit);
        result += QByteArray::number(value, 16).toUpper() + ' ';
    }
    return result;
}

template <typename C>
QByteArray hex(const std::optional<std::basic_string<C>>& text)
{
    return text ? hex(*text) : QByteArrayLiteral("fails");
}

} // namespace zvtest
