#include "impl/tables/number_text.h"

#include <QMetaType>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace zvutil::impl {

namespace {

/// The shortest decimal digits that give a number again, which is 0.DIGITS times ten to the power of `point`.
struct decimal
{
    char digits[20];
    int count = 0;
    int point = 0;

    std::string_view head(int size) const { return {digits, static_cast<std::size_t>(size)}; }
    std::string_view tail(int begin) const
    {
        return {digits + begin, static_cast<std::size_t>(count - begin)};
    }
};

char* copy(char* target, std::string_view text)
{
    return std::copy(text.begin(), text.end(), target);
}

/// Returns the decimal of a finite number that isn't negative.
decimal decimal_of(double number)
{
    char text[max_number_text];
    char* const end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::scientific).ptr;
    const char* const mark = std::find(text, end, 'e');
    decimal result;
    for (const char* at = text; at != mark; ++at) {
        if (*at != '.')
            result.digits[result.count++] = *at;
    }
    // A sign always follows; `from_chars` takes no plus.
    int exponent = 0;
    std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
    result.point = exponent + 1;
    return result;
}

/// Returns whether Qt writes a number with an exponent: from 0.0001 on it looks which form is shorter.
bool has_exponent(const decimal& number)
{
    if (number.point <= 0)
        return number.point <= -4;
    // Mantissa, "e", sign and at least two digits; the point counts only where the plain form has none.
    const int exponent_form =
        number.count + 3 + (number.point > 100 ? 3 : 2) + (number.count > number.point ? 1 : 0);
    return number.point != number.count && number.point > exponent_form;
}

char* write_exponent_form(char* target, const decimal& number)
{
    target = copy(target, number.head(1));
    if (number.count > 1) {
        *target++ = '.';
        target = copy(target, number.tail(1));
    }
    const int exponent = number.point - 1;
    *target++ = 'e';
    *target++ = exponent < 0 ? '-' : '+';
    const int size = std::abs(exponent);
    if (size < 10)
        *target++ = '0';
    return std::to_chars(target, target + 3, size).ptr;
}

char* write_plain_form(char* target, const decimal& number)
{
    if (number.point <= 0) {
        target = std::fill_n(copy(target, "0."), -number.point, '0');
        return copy(target, number.tail(0));
    }
    const int whole = std::min(number.count, number.point);
    target = std::fill_n(copy(target, number.head(whole)), number.point - whole, '0');
    if (number.count == whole)
        return target;
    *target++ = '.';
    return copy(target, number.tail(whole));
}

char* write_double(char* target, double number)
{
    if (std::isnan(number))
        return copy(target, "nan");
    if (number < 0)
        *target++ = '-';
    if (std::isinf(number))
        return copy(target, "inf");
    // Zero has no sign here, whatever its bits say.
    const decimal parts = decimal_of(std::abs(number));
    return has_exponent(parts) ? write_exponent_form(target, parts)
                               : write_plain_form(target, parts);
}

template <typename Number>
const Number& stored(const QVariant& value)
{
    return *static_cast<const Number*>(value.constData());
}

template <typename Integer>
char* write_integer(char* target, const QVariant& value)
{
    return std::to_chars(target, target + max_number_text, stored<Integer>(value)).ptr;
}

} // namespace

char* write_number(char* target, const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Int:
        return write_integer<int>(target, value);
    case QMetaType::UInt:
        return write_integer<uint>(target, value);
    case QMetaType::LongLong:
        return write_integer<qlonglong>(target, value);
    case QMetaType::ULongLong:
        return write_integer<qulonglong>(target, value);
    case QMetaType::Double:
        return write_double(target, stored<double>(value));
    default:
        return nullptr;
    }
}

} // namespace zvutil::impl
