#include "impl/text/utf8.h"

#include "impl/text/text_conversion.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <system_error>

namespace zvutil::impl {

namespace {

[[noreturn]] void throwBadSequence()
{
    throw std::system_error(EILSEQ, std::system_category());
}

struct SequenceForm
{
    std::size_t length;
    char32_t leadBits;
    char32_t lowest; ///< a smaller value should have been written in fewer bytes
};

SequenceForm formOf(unsigned char lead)
{
    if (lead >= 0xC0 && lead < 0xE0)
        return {2, lead & 0x1FU, 0x80};
    if (lead >= 0xE0 && lead < 0xF0)
        return {3, lead & 0x0FU, 0x800};
    if (lead >= 0xF0 && lead < 0xF8)
        return {4, lead & 0x07U, 0x10000};
    throwBadSequence();
}

char32_t decodeSequence(std::string_view bytes, const SequenceForm& form)
{
    if (bytes.size() < form.length)
        throwBadSequence();
    char32_t value = form.leadBits;
    for (std::size_t i = 1; i < form.length; ++i) {
        const unsigned char byte = static_cast<unsigned char>(bytes[i]);
        if ((byte & 0xC0U) != 0x80)
            throwBadSequence();
        value = (value << 6) | (byte & 0x3FU);
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < form.lowest || surrogate || value > 0x10FFFF)
        throwBadSequence();
    return value;
}

template <typename Unit>
void appendCode(std::basic_string<Unit>& target, char32_t code)
{
    Unit units[4];
    target.append(units, static_cast<std::size_t>(write_code(units, code) - units));
}

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

template <typename Unit>
std::basic_string<Unit> decode_utf8(std::string_view bytes)
{
    const auto isLong = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    const auto plainEnd = std::find_if(bytes.begin(), bytes.end(), isLong);
    std::basic_string<Unit> result(bytes.begin(), plainEnd);
    bytes.remove_prefix(result.size());
    result.reserve(result.size() + bytes.size());
    while (!bytes.empty()) {
        const unsigned char lead = static_cast<unsigned char>(bytes.front());
        if (lead < 0x80) {
            result += static_cast<Unit>(lead);
            bytes.remove_prefix(1);
            continue;
        }
        const SequenceForm form = formOf(lead);
        appendCode(result, decodeSequence(bytes, form));
        bytes.remove_prefix(form.length);
    }
    return result;
}

QString any_utf8_text(std::string_view bytes)
{
    // Add a byte order mark, since Qt drops one.
    QByteArray marked("\xEF\xBB\xBF");
    marked.append(bytes.data(), static_cast<int>(bytes.size()));
    return QString::fromUtf8(marked);
}

template <typename Unit>
std::basic_string<Unit> decode_any_utf8(std::string_view bytes)
{
    const QString text = any_utf8_text(bytes);
    std::basic_string<Unit> units(static_cast<std::size_t>(text.size()), Unit());
    std::transform(text.begin(), text.end(), units.begin(),
                   [](QChar unit) { return static_cast<Unit>(unit.unicode()); });
    return units;
}

template <typename Unit>
void append_units_as_utf8(std::string& target, std::basic_string_view<Unit> units)
{
    append_converted(target, units);
}

template <typename Unit>
void append_utf16_as_utf8(std::string& target, std::basic_string_view<Unit> text)
{
    target.reserve(target.size() + text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = static_cast<char16_t>(text[i]);
        const char32_t next = i + 1 < text.size() ? static_cast<char16_t>(text[i + 1]) : 0;
        if (isHighSurrogate(unit) && isLowSurrogate(next)) {
            appendCode(target, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            appendCode(target, unit);
        }
    }
}

template std::u16string decode_utf8<char16_t>(std::string_view bytes);
template std::wstring decode_utf8<wchar_t>(std::string_view bytes);
template std::u16string decode_any_utf8<char16_t>(std::string_view bytes);
template std::wstring decode_any_utf8<wchar_t>(std::string_view bytes);
template void append_units_as_utf8(std::string& target, std::u16string_view units);
template void append_units_as_utf8(std::string& target, std::wstring_view units);
template void append_utf16_as_utf8(std::string& target, std::u16string_view text);
template void append_utf16_as_utf8(std::string& target, std::wstring_view text);

} // namespace zvutil::impl
