#include "support/Conversions.h"
#include "support/rapidcheck.h"

#include <zvutil/ZvBasicString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <QTest>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

using zvutil::ZvBasicString;
using zvutil::experimental::string::case_insensitive_char_traits;

namespace {

/// Runs of ASCII with units between them that lie where something changes.
template <typename C>
rc::Gen<std::basic_string<C>> text(const std::vector<char32_t>& edges)
{
    const auto ascii = rc::gen::map(rc::gen::inRange<std::size_t>(0, 40), [](std::size_t length) {
        return std::basic_string<C>(length, C('x'));
    });
    const auto other = rc::gen::map(rc::gen::elementOf(edges), [](char32_t unit) {
        return std::basic_string<C>(1, static_cast<C>(unit));
    });
    return rc::gen::map(
        rc::gen::container<std::vector<std::basic_string<C>>>(rc::gen::oneOf(ascii, other)),
        [](const std::vector<std::basic_string<C>>& pieces) {
            std::basic_string<C> joined;
            for (const std::basic_string<C>& piece : pieces)
                joined += piece;
            return joined;
        });
}

const std::vector<char32_t> edges8 = {0x01, 0x41, 0x61, 0x7F, 0x80, 0xC3, 0xE4, 0xFF};
const std::vector<char32_t> edges16 = {0x01,   0x41,   0x61,   0x7F,   0x80,   0x7FF,
                                       0x800,  0x8000, 0xD7FF, 0xD800, 0xDBFF, 0xDC00,
                                       0xDFFF, 0xE000, 0xFEFF, 0xFFFE, 0xFFFF};
const std::vector<char32_t> edges32 = {0x7F,   0x80,   0x7FF,   0x800,    0xD800,   0xDFFF,
                                       0xE000, 0xFFFF, 0x10000, 0x10FFFF, 0x110000, 0xFFFFFFFF};

template <typename C>
void agreesWithTheTables(const std::vector<char32_t>& edges)
{
    QVERIFY(rc::check("conversions are those of the tables", [&edges] {
        RC_ASSERT(zvtest::disagreement(*text<C>(edges)) == QByteArray());
    }));
}

template <typename C>
void appendingIsConcatenation(const std::vector<char32_t>& edges)
{
    QVERIFY(rc::check("append and appended give both texts", [&edges] {
        const std::basic_string<C> a = *text<C>(edges);
        const std::basic_string<C> b = *text<C>(edges);
        ZvBasicString<C> string(a);
        RC_ASSERT(string.appended(ZvBasicString<C>(b)).toStringType() == a + b);
        RC_ASSERT(string.append(ZvBasicString<C>(b)).toStringType() == a + b);
    }));
}

template <typename C>
void comparisonIsAnOrder(const std::vector<char32_t>& edges)
{
    QVERIFY(rc::check("compare is an order that equality agrees with", [&edges] {
        const std::basic_string<C> a = *text<C>(edges);
        const std::basic_string<C> b = *text<C>(edges);
        const std::size_t length = std::min(a.size(), b.size());
        const auto compare = &case_insensitive_char_traits<C>::compare;
        const int result = compare(a.data(), b.data(), length);
        RC_ASSERT(result >= -1 && result <= 1);
        RC_ASSERT(compare(b.data(), a.data(), length) == -result);
        const bool equal = a.size() == b.size() && result == 0;
        RC_ASSERT((ZvBasicString<C>(a) == ZvBasicString<C>(b)) == equal);
        RC_ASSERT((ZvBasicString<C>(a) == b) == equal);
        RC_ASSERT((ZvBasicString<C>(a) == b.c_str()) == equal);
        RC_ASSERT(ZvBasicString<C>(a) == a);
    }));
}

/// Of a `char32_t` text that converts, all 16-bit forms are the same units.
void formsOf16BitsAgree()
{
    QVERIFY(rc::check("towards 16 and 32-bit units the same units come out", [] {
        const std::u16string units = *text<char16_t>(edges16);
        const ZvBasicString<char16_t> string(units);
        RC_ASSERT(string.toU16String().toStringType() == units);
        RC_ASSERT(string.toWString().toU16String().toStringType() == units);
        RC_ASSERT(string.toU32String().toU16String().toStringType() == units);
    }));
}

} // namespace

class tst_ZvBasicString_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conversions()
    {
        agreesWithTheTables<char>(edges8);
        agreesWithTheTables<char16_t>(edges16);
        agreesWithTheTables<char32_t>(edges32);
        agreesWithTheTables<wchar_t>(edges16);
    }

    void unitsOf16BitsSurviveEachRound() { formsOf16BitsAgree(); }

    void appending()
    {
        appendingIsConcatenation<char>(edges8);
        appendingIsConcatenation<char16_t>(edges16);
        appendingIsConcatenation<char32_t>(edges32);
        appendingIsConcatenation<wchar_t>(edges16);
    }

    void comparison()
    {
        comparisonIsAnOrder<char>(edges8);
        comparisonIsAnOrder<char16_t>(edges16);
        comparisonIsAnOrder<char32_t>(edges32);
        comparisonIsAnOrder<wchar_t>(edges16);
    }
};

QTEST_APPLESS_MAIN(tst_ZvBasicString_properties)
#include "tst_ZvBasicString_properties.moc"
