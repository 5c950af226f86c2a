#include "impl/utf8.h"

#include "impl/surrogates.h"
#include "impl/text_conversion.h"

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

void appendUtf16(std::u16string& target, char32_t value)
{
    if (value < 0x10000) {
        target += static_cast<char16_t>(value);
    } else {
        target += static_cast<char16_t>(high_surrogate(value));
        target += static_cast<char16_t>(low_surrogate(value));
    }
}

} // namespace

std::u16string decode_utf8(std::string_view bytes)
{
    std::u16string result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        const unsigned char lead = static_cast<unsigned char>(bytes.front());
        if (lead < 0x80) {
            result += static_cast<char16_t>(lead);
            bytes.remove_prefix(1);
            continue;
        }
        const SequenceForm form = formOf(lead);
        appendUtf16(result, decodeSequence(bytes, form));
        bytes.remove_prefix(form.length);
    }
    return result;
}

void append_units_as_utf8(std::string& target, std::u16string_view units)
{
    append_converted(target, units);
}

} // namespace zvutil::impl
