#include <zvutil/ZvBasicString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include "support/Conversions.h"
#include "support/StdString.h"
#include "support/Threads.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <clocale>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using zvtest::converted;
using zvtest::disagreement;
using zvtest::hex;
using zvtest::unlessBad;
using zvutil::ZvBasicString;
using zvutil::experimental::string::case_insensitive_char_traits;
using namespace std::string_literals;

Q_DECLARE_METATYPE(std::u32string)

namespace {

/// A 7-bit text in the units of `C`, or units that are given by their values.
template <typename C, typename Units>
std::basic_string<C> units(const Units& values)
{
    std::basic_string<C> result;
    for (const auto value : values)
        result += static_cast<C>(value);
    return result;
}

template <typename C>
std::basic_string<C> ascii(const char* text)
{
    return units<C>(std::string(text));
}

template <typename C>
ZvBasicString<C> stringOf(const char* text)
{
    return ZvBasicString<C>(ascii<C>(text));
}

/// Calls \p test with a unit of each of the four types.
template <typename Test>
void forEachType(Test test)
{
    test(char());
    test(char16_t());
    test(char32_t());
    test(wchar_t());
}

/// Calls \p test with a unit of the type that is called \p name.
template <typename Test>
void forType(const QByteArray& name, Test test)
{
    if (name == "char")
        test(char()); // NOLINT(bugprone-branch-clone): the types differ
    else if (name == "char16_t")
        test(char16_t());
    else if (name == "char32_t")
        test(char32_t());
    else if (name == "wchar_t")
        test(wchar_t());
    else
        QFAIL("no such type");
}

template <typename T, typename = void>
struct HasUnequal : std::false_type
{
};
template <typename T>
struct HasUnequal<T, std::void_t<decltype(std::declval<T>() != std::declval<const T&>())>>
    : std::true_type
{
};
template <typename T, typename = void>
struct HasLess : std::false_type
{
};
template <typename T>
struct HasLess<T, std::void_t<decltype(std::declval<T>() < std::declval<const T&>())>>
    : std::true_type
{
};

template <typename C>
struct InterfaceIsAsLaidDown
{
    using String = ZvBasicString<C>;
    using Traits = case_insensitive_char_traits<C>;

    static_assert(sizeof(String) == 3 * sizeof(void*));
    static_assert(std::has_virtual_destructor_v<String>);
    static_assert(std::is_nothrow_move_constructible_v<String>);
    static_assert(std::is_nothrow_move_assignable_v<String>);
    static_assert(std::is_copy_constructible_v<String> && std::is_copy_assignable_v<String>);
    static_assert(std::is_convertible_v<const C*, String>);
    static_assert(std::is_convertible_v<const std::basic_string<C>&, String>);
    static_assert(HasUnequal<std::string>::value);
    static_assert(HasLess<std::string>::value);
    static_assert(!HasLess<String>::value);
#if __cplusplus < 202002L
    static_assert(!HasUnequal<String>::value); // later the language makes one
#endif
    static_assert(!std::is_default_constructible_v<std::hash<String>>);
    static_assert(std::is_base_of_v<std::char_traits<C>, Traits>);
    static_assert(std::is_same_v<typename Traits::char_type, C>);
};
template struct InterfaceIsAsLaidDown<char>;
template struct InterfaceIsAsLaidDown<char16_t>;
template struct InterfaceIsAsLaidDown<char32_t>;
template struct InterfaceIsAsLaidDown<wchar_t>;

class DerivedString : public ZvBasicString<char>
{
public:
    explicit DerivedString(bool* destroyed)
        : m_destroyed(destroyed)
    {
    }
    DerivedString(const DerivedString&) = delete;
    DerivedString& operator=(const DerivedString&) = delete;
    ~DerivedString() override { *m_destroyed = true; }

private:
    bool* m_destroyed;
};

constexpr char fails[] = "fails";

} // namespace

class tst_ZvBasicString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultConstructedIsEmpty()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            const ZvBasicString<C> text;
            QCOMPARE(hex(text.toStringType()), QByteArray());
            QVERIFY(*text.c_str() == C());
            QVERIFY(text == ZvBasicString<C>(std::basic_string<C>()));
        });
    }

    void pointerIsReadUpToItsNul()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            const std::basic_string<C> source = ascii<C>("ab") + C() + ascii<C>("cd");
            QCOMPARE(hex(ZvBasicString<C>(source.c_str()).toStringType()), QByteArray("61 62 "));
            QCOMPARE(hex(ZvBasicString<C>(source.c_str() + 2).toStringType()), QByteArray());
        });
    }

    void standardStringIsReadUpToItsFirstNul()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            const std::basic_string<C> source = ascii<C>("ab") + C() + ascii<C>("cd");
            QCOMPARE(hex(ZvBasicString<C>(source).toStringType()), QByteArray("61 62 "));
            QCOMPARE(hex(ZvBasicString<C>(C() + source).toStringType()), QByteArray());
        });
    }

    void wideValuesAboveFFFFAreSplit()
    {
        const std::wstring clef = L"a\U0001D11Ez";
        const std::wstring highest = L"\U0010FFFF";
        QCOMPARE(hex(ZvBasicString<wchar_t>(clef).toStringType()), QByteArray("61 D834 DD1E 7A "));
        QCOMPARE(hex(ZvBasicString<wchar_t>(clef.c_str()).toStringType()),
                 QByteArray("61 D834 DD1E 7A "));
        QCOMPARE(hex(ZvBasicString<wchar_t>(highest).toStringType()), QByteArray("DBFF DFFF "));
        const ZvBasicString<wchar_t> inUnits(units<wchar_t>(U"a\xD834\xDD1Ez"s));
        QVERIFY(inUnits == clef);
        QVERIFY(inUnits == clef.c_str());
        QVERIFY(inUnits == ZvBasicString<wchar_t>(clef));
        QVERIFY(!(inUnits == highest));
        QCOMPARE(hex(ZvBasicString<wchar_t>(clef).toString().toStringType()),
                 QByteArray("61 ED A0 B4 ED B4 9E 7A "));
    }

    void wideValuesAbove10FFFFAreReplaced()
    {
        if constexpr (std::numeric_limits<wchar_t>::max() == 0xFFFF)
            QSKIP("wchar_t holds nothing above 0xFFFF on this platform");
        const std::wstring wrong =
            units<wchar_t>(std::array<long long, 3>{0x110000, 0x7FFFFFFF, 0x61});
        QCOMPARE(hex(ZvBasicString<wchar_t>(wrong).toStringType()), QByteArray("FFFD FFFD 61 "));
        QCOMPARE(hex(ZvBasicString<wchar_t>(wrong.c_str()).toStringType()),
                 QByteArray("FFFD FFFD 61 "));
        QVERIFY(ZvBasicString<wchar_t>(L"\xFFFD\xFFFD"
                                       L"A")
                == wrong);
        QCOMPARE(hex(ZvBasicString<wchar_t>(std::wstring(1, wchar_t(-1))).toStringType()),
                 QByteArray("FFFD "));
    }

    void copyIsUnaffectedByItsSource()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            ZvBasicString<C> source = stringOf<C>("a text that is stored outside");
            const ZvBasicString<C> copy(source);
            ZvBasicString<C> assigned;
            assigned = source;
            QVERIFY(copy.c_str() != source.c_str() && assigned.c_str() != source.c_str());
            source.append(source);
            QVERIFY(copy.toStringType() == ascii<C>("a text that is stored outside"));
            QVERIFY(assigned.toStringType() == copy.toStringType());
        });
    }

    void copyAssignmentWritesIntoTheImplementation()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            ZvBasicString<C> target = stringOf<C>("a text that is stored outside");
            const C* const buffer = target.c_str();
            const ZvBasicString<C> source = stringOf<C>("short");
            target = source;
            QVERIFY(target.c_str() == buffer);
            QVERIFY(target.toStringType() == ascii<C>("short"));
            ZvBasicString<C>& same = target;
            target = same;
            QVERIFY(target.c_str() == buffer);
            QVERIFY(target.toStringType() == ascii<C>("short"));
        });
    }

    void moveShiftsTheImplementation()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            ZvBasicString<C> source = stringOf<C>("x");
            const C* const buffer = source.c_str();
            ZvBasicString<C> target(std::move(source));
            QVERIFY(target.c_str() == buffer);
            ZvBasicString<C> assigned = stringOf<C>("y");
            assigned = std::move(target);
            QVERIFY(assigned.c_str() == buffer);
            ZvBasicString<C>& same = assigned;
            assigned = std::move(same);
            QVERIFY(assigned.c_str() == buffer && *buffer == C('x'));
        });
    }

    void movedFromStringCanBeMovedDestroyedAndRevived()
    {
        ZvBasicString<char> source("x");
        const ZvBasicString<char> target(std::move(source));
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): that is the test
        ZvBasicString<char> second(std::move(source));
        second = ZvBasicString<char>("y");
        QCOMPARE(second.toStdString(), "y"s);
        QCOMPARE(target.toStdString(), "x"s);
    }

    void deletingThroughABasePointerCallsTheDerivedDestructor()
    {
        bool destroyed = false;
        std::unique_ptr<ZvBasicString<char>> base = std::make_unique<DerivedString>(&destroyed);
        base.reset();
        QVERIFY(destroyed);
    }

    void appendReturnsTheStringItself()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            ZvBasicString<C> text = stringOf<C>("ab");
            QVERIFY(&text.append(stringOf<C>("cd")) == &text);
            QVERIFY(text.toStringType() == ascii<C>("abcd"));
            text.append(text).append(ZvBasicString<C>());
            QVERIFY(text.toStringType() == ascii<C>("abcdabcd"));
            for (int i = 0; i < 6; ++i)
                text.append(text);
            QVERIFY(text.toStringType().size() == 8 * 64);
        });
    }

    void appendedLeavesBothAsTheyAre()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            const ZvBasicString<C> first = stringOf<C>("ab");
            const ZvBasicString<C> second = stringOf<C>("cd");
            QVERIFY(first.appended(second).toStringType() == ascii<C>("abcd"));
            QVERIFY(first.appended(first).toStringType() == ascii<C>("abab"));
            QVERIFY(ZvBasicString<C>().appended(first).toStringType() == ascii<C>("ab"));
            QVERIFY(first.toStringType() == ascii<C>("ab"));
            QVERIFY(second.toStringType() == ascii<C>("cd"));
        });
    }

    void appendedSurrogatesStayUnits()
    {
        const ZvBasicString<char16_t> high(std::u16string(1, char16_t(0xD834)));
        const ZvBasicString<char16_t> low(std::u16string(1, char16_t(0xDD1E)));
        QCOMPARE(hex(high.appended(low).toString().toStringType()),
                 QByteArray("ED A0 B4 ED B4 9E "));
    }

    void pointersAreToOneNulEndedBuffer()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            const ZvBasicString<C> text = stringOf<C>("abc");
            QVERIFY(text.c_str() == text.data());
            QVERIFY(text.c_str()[2] == C('c') && text.c_str()[3] == C());
        });
    }

    void equality_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<std::u32string>("a");
        QTest::addColumn<std::u32string>("b");
        QTest::addColumn<bool>("expected");
        for (const char* type : {"char", "char16_t", "char32_t", "wchar_t"}) {
            const auto row = [type](const char* name, const std::u32string& a,
                                    const std::u32string& b, bool expected) {
                QTest::addRow("%s, %s", type, name) << QByteArray(type) << a << b << expected;
            };
            row("case", U"Abc", U"aBC", true);
            row("all capitals", U"ABC", U"abc", true);
            row("all letters", U"abcdefghijklmnopqrstuvwxyz", U"ABCDEFGHIJKLMNOPQRSTUVWXYZ", true);
            row("longer", U"ABC", U"abcd", false);
            row("shorter", U"abcd", U"ABC", false);
            row("empty", U"", U"", true);
            row("empty and not", U"", U"a", false);
            row("other letter", U"abc", U"abd", false);
            row("[ is no {", U"[", U"{", false);
            row("@ is no `", U"@", U"`", false);
            row("0x80 and itself", U"\x80", U"\x80", true);
            row("0x80 and 0x81", U"\x80", U"\x81", false);
        }
        const auto row = [](const char* type, const char* name, const std::u32string& a,
                            const std::u32string& b, bool expected) {
            QTest::addRow("%s, %s", type, name) << QByteArray(type) << a << b << expected;
        };
        row("char16_t", "unit whose low byte is a letter", U"\x141", U"A", false);
        row("wchar_t", "unit whose low byte is a letter", U"\x141", U"A", false);
        row("char32_t", "unit whose low byte is a letter", U"\x161", U"\x141", false);
        row("char32_t", "unit whose low half is a letter", U"\x10041", U"A", false);
    }

    void equality()
    {
        QFETCH(QByteArray, type);
        QFETCH(std::u32string, a);
        QFETCH(std::u32string, b);
        QFETCH(bool, expected);
        forType(type, [&](auto unit) {
            using C = decltype(unit);
            const std::basic_string<C> other = units<C>(b);
            const ZvBasicString<C> text(units<C>(a));
            QCOMPARE(text == ZvBasicString<C>(other), expected);
            QCOMPARE(text == other, expected);
            QCOMPARE(text == other.c_str(), expected);
            QCOMPARE(text == other + C() + ascii<C>("behind NUL"), expected);
        });
    }

    void traitsCompare_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<std::u32string>("a");
        QTest::addColumn<std::u32string>("b");
        QTest::addColumn<int>("expected");
        const auto row = [](const char* type, const char* name, const std::u32string& a,
                            const std::u32string& b, int expected) {
            QTest::addRow("%s, %s", type, name) << QByteArray(type) << a << b << expected;
        };
        for (const char* type : {"char", "char16_t", "char32_t", "wchar_t"}) {
            row(type, "equal", U"aB", U"Ab", 0);
            row(type, "smaller", U"a", U"B", -1);
            row(type, "greater", U"b", U"A", 1);
            row(type, "the first difference decides", U"ABz", U"acA", -1);
            row(type, "folded upwards: a before _", U"a", U"_", -1);
            row(type, "folded upwards: z before [", U"z", U"[", -1);
            row(type, "folded upwards: ^ behind Z", U"^", U"z", 1);
            row(type, "@ before a", U"@", U"a", -1);
            row(type, "of no length", U"", U"", 0);
        }
        row("char", "0x80 before A", U"\x80", U"A", -1);
        row("char", "0xFF before A", U"\xFF", U"A", -1);
        row("char", "0xFF before the lowest byte", U"\xFF", U"\x01", -1);
        row("char", "0x80 before 0xFF", U"\x80", U"\xFF", -1);
        row("char", "z behind 0xE4", U"z", U"\xE4", 1);
        for (const char* type : {"char16_t", "wchar_t"}) {
            row(type, "0x80 behind z", U"\x80", U"z", 1);
            row(type, "0x8000 behind A", U"\x8000", U"A", 1);
            row(type, "0xFFFF behind 0x8000", U"\xFFFF", U"\x8000", 1);
            row(type, "surrogate before 0xE000", U"\xDC00", U"\xE000", -1);
        }
        row("char32_t", "0x80 behind z", U"\x80", U"z", 1);
        row("char32_t", "0x161 isn't folded", U"\x161", U"\x141", 1);
        row("char32_t", "0x80000000 behind A", std::u32string(1, char32_t(0x80000000)), U"A", 1);
        row("char32_t", "0xFFFFFFFF behind 0x7FFFFFFF", std::u32string(1, char32_t(0xFFFFFFFF)),
            std::u32string(1, char32_t(0x7FFFFFFF)), 1);
    }

    void traitsCompare()
    {
        QFETCH(QByteArray, type);
        QFETCH(std::u32string, a);
        QFETCH(std::u32string, b);
        QFETCH(int, expected);
        forType(type, [&](auto unit) {
            using C = decltype(unit);
            using Traits = case_insensitive_char_traits<C>;
            const std::basic_string<C> x = units<C>(a);
            const std::basic_string<C> y = units<C>(b);
            QCOMPARE(Traits::compare(x.data(), y.data(), x.size()), expected);
            QCOMPARE(Traits::compare(y.data(), x.data(), x.size()), -expected);
            QCOMPARE(Traits::compare(x.data(), y.data(), 0), 0);
            // What lies behind doesn't count.
            const std::basic_string<C> longer = x + C('a');
            const std::basic_string<C> other = y + C('b');
            QCOMPARE(Traits::compare(longer.data(), other.data(), x.size()), expected);
        });
    }

    void traitsFoldNothingElse()
    {
        forEachType([](auto unit) {
            using C = decltype(unit);
            using Traits = case_insensitive_char_traits<C>;
            const std::basic_string<C> text = ascii<C>("xAa");
            const C small = C('a');
            QVERIFY(!Traits::eq(C('a'), C('A')));
            QVERIFY(Traits::lt(C('A'), C('a')));
            QVERIFY(Traits::find(text.data(), text.size(), small) == text.data() + 2);
            QCOMPARE(Traits::length(text.c_str()), std::size_t(3));
        });
    }

    void traitsServeOtherStrings()
    {
        using Text = std::basic_string<char, case_insensitive_char_traits<char>>;
        QVERIFY(Text("Abc") == Text("aBC"));
        QVERIFY(Text("a") < Text("_"));
        QVERIFY(Text("abc") != Text("abcd"));
    }

    void conversion_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<std::u32string>("source");
        QTest::addColumn<QByteArray>("toString");
        QTest::addColumn<QByteArray>("toWString");
        QTest::addColumn<QByteArray>("toU16String");
        QTest::addColumn<QByteArray>("toU32String");
        const auto row = [](const char* type, const char* name, const std::u32string& source,
                            const char* utf8, const char* units16, const char* units32) {
            QTest::addRow("%s, %s", type, name)
                << QByteArray(type) << source << QByteArray(utf8) << QByteArray(units16)
                << QByteArray(units16) << QByteArray(units32);
        };
        const auto same = [row](const char* type, const char* name, const std::u32string& source,
                                const char* utf8,
                                const char* all) { row(type, name, source, utf8, all, all); };
        const auto bad = [row](const char* type, const char* name, const std::u32string& source) {
            row(type, name, source, fails, fails, fails);
        };

        for (const char* type : {"char", "char16_t", "char32_t", "wchar_t"}) {
            same(type, "empty", U"", "", "");
            same(type, "7-bit text", U"Az~", "41 7A 7E", "41 7A 7E");
            same(type, "lowest and highest 7-bit unit", U"\x01\x7F", "1 7F", "1 7F");
        }

        bad("char", "Latin-1", U"\xE4");
        bad("char", "UTF-8", U"\xC3\xA4");
        bad("char", "behind 7-bit text",
            U"Gr\xFC\xDF"
            U"e");
        bad("char", "lowest byte that fails", U"\x80");
        bad("char", "highest byte", U"\xFF");
        bad("char", "UTF-8, three bytes", U"\xE2\x82\xAC");
        bad("char", "UTF-8, four bytes", U"\xF0\x9D\x84\x9E");
        bad("char", "byte order mark", U"\xEF\xBB\xBF");
        bad("char", "cut after one byte of two", U"\xC3");
        bad("char", "cut after two bytes of three", U"\xE2\x82");
        bad("char", "cut after three bytes of four", U"\xF0\x9D\x84");
        bad("char", "lead before 7-bit", U"\xC3x");
        bad("char", "overlong two", U"\xC1\x81");
        bad("char", "overlong three", U"\xE0\x81\x81");
        bad("char", "overlong four", U"\xF0\x80\x81\x81");
        bad("char", "surrogate in three bytes", U"\xED\xA0\xB4");
        bad("char", "above 0x10FFFF", U"\xF4\x90\x80\x80");
        bad("char", "five-byte lead", U"\xF8\x88\x80\x80\x80");
        bad("char", "six-byte lead", U"\xFC\x84\x80\x80\x80\x80");
        bad("char", "bad at the end of a long text", std::u32string(1000, U'x') + U'\x80');

        for (const char* type : {"char16_t", "wchar_t"}) {
            same(type, "two bytes", U"\x80\x7FF", "C2 80 DF BF", "80 7FF");
            same(type, "three bytes", U"\x800\xFFFF", "E0 A0 80 EF BF BF", "800 FFFF");
            same(type, "letter above U+007F", U"\xE4", "C3 A4", "E4");
            same(type, "surrogate pair", U"\xD834\xDD1E", "ED A0 B4 ED B4 9E", "D834 DD1E");
            same(type, "highest pair", U"\xDBFF\xDFFF", "ED AF BF ED BF BF", "DBFF DFFF");
            same(type, "high surrogate alone", U"\xD800", "ED A0 80", "D800");
            same(type, "low surrogate alone", U"x\xDFFF", "78 ED BF BF", "78 DFFF");
            same(type, "pair the wrong way round", U"\xDC00\xD800", "ED B0 80 ED A0 80",
                 "DC00 D800");
            same(type, "byte order mark stays", U"\xFEFFx", "EF BB BF 78", "FEFF 78");
            same(type, "swapped mark stays", U"\xFFFEx", "EF BF BE 78", "FFFE 78");
        }

        const char* const wide = "char32_t";
        same(wide, "two bytes", U"\x80\x7FF", "C2 80 DF BF", "80 7FF");
        same(wide, "three bytes", U"\x800\xFFFF", "E0 A0 80 EF BF BF", "800 FFFF");
        same(wide, "above 0xFFFF", U"\x1D11E", "F0 9D 84 9E", "D834 DD1E");
        same(wide, "first above 0xFFFF", U"\x10000", "F0 90 80 80", "D800 DC00");
        same(wide, "highest code point", U"\x10FFFF", "F4 8F BF BF", "DBFF DFFF");
        same(wide, "surrogates as units", U"\xD834\xDD1E", "ED A0 B4 ED B4 9E", "D834 DD1E");
        same(wide, "surrogate alone", U"\xDFFF", "ED BF BF", "DFFF");
        same(wide, "byte order mark stays", U"\xFEFFx", "EF BB BF 78", "FEFF 78");
        for (const char32_t value :
             {0x110000U, 0x200000U, 0x7FFFFFFFU, 0x80000000U, 0x80000041U, 0xFFFFFFFFU})
            bad(wide, QByteArray::number(value, 16), std::u32string(1, value));
        bad(wide, "bad at the end of a long text", std::u32string(1000, U'x') + char32_t(0x110000));
    }

    void conversion()
    {
        QFETCH(QByteArray, type);
        QFETCH(std::u32string, source);
        QFETCH(QByteArray, toString);
        QFETCH(QByteArray, toWString);
        QFETCH(QByteArray, toU16String);
        QFETCH(QByteArray, toU32String);
        forType(type, [&](auto unit) {
            using C = decltype(unit);
            const std::basic_string<C> before = units<C>(source);
            const ZvBasicString<C> text(before);
            QCOMPARE(hex(converted<char>(text)).trimmed(), toString);
            QCOMPARE(hex(converted<wchar_t>(text)).trimmed(), toWString);
            QCOMPARE(hex(converted<char16_t>(text)).trimmed(), toU16String);
            QCOMPARE(hex(converted<char32_t>(text)).trimmed(), toU32String);
            const auto narrow = unlessBad([&] { return text.toStdString(); });
            if constexpr (std::is_same_v<C, char>)
                QVERIFY(narrow == before);
            else
                QCOMPARE(hex(narrow).trimmed(), toString);
            QVERIFY(text.toStringType() == before);
            QVERIFY(text.c_str() == before);
        });
    }

    void conversionAgreesWithTheTables_data() { conversion_data(); }

    void conversionAgreesWithTheTables()
    {
        QFETCH(QByteArray, type);
        QFETCH(std::u32string, source);
        forType(type, [&](auto unit) {
            QCOMPARE(disagreement(units<decltype(unit)>(source)), QByteArray());
        });
    }

    void wideToNarrowAndBackIsNoRoundTrip()
    {
        const ZvBasicString<char> narrow = ZvBasicString<wchar_t>(L"\u00E4").toString();
        QCOMPARE(narrow.toStdString(), "\xC3\xA4"s);
        QVERIFY_EXCEPTION_THROWN(narrow.toWString(), std::range_error);
    }

    void resultsAreStringsOfTheirOwn()
    {
        ZvBasicString<char16_t> source(u"abc");
        const ZvBasicString<char16_t> result = source.toU16String();
        source.append(source);
        QVERIFY(result == u"abc");
    }

    void everyByteAtEveryPosition()
    {
        for (unsigned byte = 1; byte <= 0xFF; ++byte) {
            for (std::size_t position = 0; position < 40; ++position) {
                std::string text(40, 'x');
                text[position] = static_cast<char>(byte);
                QCOMPARE(disagreement(text), QByteArray());
            }
            QCOMPARE(disagreement(std::string(1, static_cast<char>(byte))), QByteArray());
        }
    }

    void every16BitUnit()
    {
        for (char32_t unit = 1; unit <= 0xFFFF; ++unit) {
            QCOMPARE(disagreement(std::u16string(1, static_cast<char16_t>(unit))), QByteArray());
            QCOMPARE(disagreement(std::wstring(1, static_cast<wchar_t>(unit))), QByteArray());
            std::u16string text(40, u'x');
            text[unit % 40] = static_cast<char16_t>(unit);
            QCOMPARE(disagreement(text), QByteArray());
            QCOMPARE(disagreement(std::wstring(text.begin(), text.end())), QByteArray());
        }
    }

    void everyCodePoint()
    {
        // So many that each goes through the quick step and some through what is behind it.
        const std::size_t together = 17;
        std::u32string text;
        for (char32_t code = 1; code <= 0x10FFFF; ++code) {
            text += code;
            if (text.size() == together || code == 0x10FFFF) {
                QCOMPARE(disagreement(text), QByteArray());
                text.clear();
            }
        }
    }

    void everyPositionOf32BitUnits()
    {
        for (const char32_t unit : {0x80U, 0x7FFU, 0x800U, 0x8000U, 0xFFFFU, 0x10000U, 0x10041U,
                                    0x10FFFFU, 0x110000U, 0x80000041U, 0xFFFFFFFFU}) {
            for (std::size_t position = 0; position < 40; ++position) {
                std::u32string text(40, U'x');
                text[position] = unit;
                QCOMPARE(disagreement(text), QByteArray());
                text[39 - position] = 0xE4;
                QCOMPARE(disagreement(text), QByteArray());
            }
        }
    }

    void everyLengthAroundTheBlocks()
    {
        for (std::size_t length = 500; length < 530; ++length) {
            QCOMPARE(disagreement(std::string(length, 'x')), QByteArray());
            QCOMPARE(disagreement(std::u16string(length, u'x')), QByteArray());
            QCOMPARE(disagreement(std::u16string(length, u'\xFFFF')), QByteArray());
            QCOMPARE(disagreement(std::u32string(length, U'\x10FFFF')), QByteArray());
            QCOMPARE(disagreement(std::wstring(length, L'\xE4')), QByteArray());
        }
    }

    void longTexts()
    {
        const std::size_t bytes = 100 * 1000 * 1000;
        forEachType([&](auto unit) {
            using C = decltype(unit);
            const std::basic_string<C> text(bytes / sizeof(C), C('x'));
            const ZvBasicString<C> fromPointer(text.c_str());
            const ZvBasicString<C> fromString(text);
            QVERIFY(fromPointer.c_str() == text);
            QVERIFY(fromString == fromPointer);
        });
    }

    void longTextsConvert()
    {
        const std::size_t length = 10 * 1000 * 1000;
        const ZvBasicString<char16_t> text(std::u16string(length, u'\x20AC'));
        QCOMPARE(text.toStdString().size(), 3 * length);
        const ZvBasicString<char32_t> pairs(std::u32string(length, U'\x1D11E'));
        QCOMPARE(pairs.toWString().toStringType().size(), 2 * length);
    }

    void laterLocaleOfTheCLibraryChangesNothing()
    {
        const ZvBasicString<wchar_t> wide(L"\u00E4");
        const ZvBasicString<char16_t> units(u"\u00E4");
        QVERIFY(!(wide == L"\u00C4") && !(units == u"\u00C4"));
#if defined(Q_OS_WIN)
        QVERIFY(std::setlocale(LC_ALL, "German_Germany.1252"));
#else
        QVERIFY(std::setlocale(LC_ALL, "C.UTF-8"));
#endif
        const bool folded = wide == L"\u00C4" || units == u"\u00C4";
        std::setlocale(LC_ALL, "C");
        QVERIFY(!folded);
    }

    void severalThreadsCompareAndConvert()
    {
        std::atomic<int> wrong{0};
        const auto work = [&wrong] {
            for (int i = 0; i < 500; ++i) {
                const ZvBasicString<wchar_t> text(L"Caf\u00E9");
                const bool right = text == L"CAF\u00E9" && text.toStdString() == "Caf\xC3\xA9"
                    && ZvBasicString<char>("Abc") == "aBC"
                    && ZvBasicString<char16_t>(u"Abc") == u"aBC"
                    && ZvBasicString<char32_t>(U"Abc").toU16String() == u"aBC";
                if (!right)
                    ++wrong;
            }
        };
        zvtest::onTwoThreads(work);
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_APPLESS_MAIN(tst_ZvBasicString)
#include "tst_ZvBasicString.moc"
