// Conversion between units of all widths against the plain steps, on texts of all lengths. The program is built twice:
// strings of an older standard can't be written to without being filled first, which takes another way.

#include "impl/text/text_conversion.h"

#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <QTest>

#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace {

template <typename Unit>
using Text =
    std::basic_string<Unit, zvutil::experimental::string::case_insensitive_char_traits<Unit>>;

/// Lengths around those of the steps and blocks, and one of many blocks.
const std::vector<std::size_t> lengths{0,   1,   7,   15,   16,   17,   31,   32,    511,
                                       512, 513, 528, 1023, 1024, 1025, 4095, 20000, 100003};

/// Appends what one unit becomes. Throws if it is no code.
template <typename Target, typename Source>
void appendPlainly(Text<Target>& target, Source source)
{
    char32_t code = static_cast<char32_t>(source);
    if (std::is_same_v<Source, char>)
        code = static_cast<char32_t>(static_cast<signed char>(source));
    if (code > 0x10FFFF)
        throw std::range_error("bad conversion");
    Target units[4];
    const Target* const end = zvutil::impl::write_code(units, code);
    for (const Target* unit = units; unit != end; ++unit)
        target.push_back(*unit);
}

/// Returns texts of a length: of ASCII, with one other unit in ten, and first one, then the other.
template <typename Source>
std::vector<std::basic_string<Source>> texts(std::size_t length)
{
    std::mt19937 random(1); // the same texts each time
    const auto ascii = [&] { return static_cast<Source>(random() % 0x80); };
    const auto other = [&] {
        if constexpr (std::is_same_v<Source, char>)
            return 'x'; // no other byte can be converted
        else if constexpr (sizeof(Source) == sizeof(char16_t))
            return static_cast<Source>(random() % 0x10000);
        else
            return static_cast<Source>(random() % 0x110000);
    };
    std::vector<std::basic_string<Source>> result(4);
    for (std::size_t i = 0; i < length; ++i) {
        result[0] += ascii();
        result[1] += random() % 10 == 0 ? other() : ascii();
        result[2] += i < length / 2 ? ascii() : other();
        result[3] += i < length / 2 ? other() : ascii();
    }
    return result;
}

template <typename Target, typename Source>
bool isConverted(const std::basic_string<Source>& source)
{
    Text<Target> expected;
    expected.push_back(static_cast<Target>('b')); // what is there before
    Text<Target> actual = expected;
    for (const Source unit : source)
        appendPlainly(expected, unit);
    zvutil::impl::append_converted(actual, std::basic_string_view<Source>(source));
    return actual.size() == expected.size()
        && std::equal(actual.begin(), actual.end(), expected.begin());
}

/// Returns whether texts of all kinds are converted.
template <typename Target, typename Source>
bool areConverted()
{
    for (const std::size_t length : lengths) {
        for (const std::basic_string<Source>& text : texts<Source>(length)) {
            if (!isConverted<Target>(text))
                return false;
        }
    }
    return true;
}

template <typename Source>
bool areConvertedToAll()
{
    return areConverted<char, Source>() && areConverted<char16_t, Source>()
        && areConverted<char32_t, Source>() && areConverted<wchar_t, Source>();
}

/// Returns whether a text with a unit that is no code is refused, and no more than a part of it is appended.
template <typename Target, typename Source>
bool isRefused(std::size_t length, std::size_t place, Source unit)
{
    std::basic_string<Source> source(length, static_cast<Source>('a'));
    source[place] = unit;
    Text<Target> target;
    try {
        zvutil::impl::append_converted(target, std::basic_string_view<Source>(source));
        return false;
    } catch (const std::range_error& error) {
        return std::string(error.what()) == "bad conversion" && target.size() <= place
            && target.find_first_not_of(Target('a')) == target.npos;
    }
}

template <typename Source>
bool areRefused(Source unit)
{
    for (const std::size_t length : lengths) {
        for (const std::size_t place : {std::size_t(0), length / 2, length - 1}) {
            if (length > 0
                && !(isRefused<char>(length, place, unit)
                     && isRefused<char16_t>(length, place, unit)
                     && isRefused<wchar_t>(length, place, unit)))
                return false;
        }
    }
    return true;
}

} // namespace

class tst_text_conversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsEqualThePlainSteps()
    {
        QVERIFY(areConvertedToAll<char>());
        QVERIFY(areConvertedToAll<char16_t>());
        QVERIFY(areConvertedToAll<char32_t>());
        QVERIFY(areConvertedToAll<wchar_t>());
    }

    void whatIsNoCodeIsRefused()
    {
        QVERIFY(areRefused<char>('\x80'));
        QVERIFY(areRefused<char>('\xFF'));
        QVERIFY(areRefused<char32_t>(0x110000));
        QVERIFY(areRefused<char32_t>(0xFFFFFFFF));
        if constexpr (sizeof(wchar_t) > sizeof(char16_t))
            QVERIFY(areRefused<wchar_t>(static_cast<wchar_t>(0x110000)));
    }

    void longTextsTakeNoMoreThanTheyNeed()
    {
        const std::u16string source(1000000, u'a');
        Text<char> target;
        zvutil::impl::append_converted(target, std::u16string_view(source));
        QCOMPARE(target.size(), source.size());
        QVERIFY(target.capacity() < source.size() + source.size() / 8);
    }
};

QTEST_GUILESS_MAIN(tst_text_conversion)

#include "tst_text_conversion.moc"
