#include "BasicStringTypes.h"

#include <zvutil/ZvBasicString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include "support/Conversions.h"
#include "support/StdString.h"
#include "support/Threads.h"

#include <QTest>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using zvtest::forType;
using zvtest::hex;
using zvtest::units;
using zvutil::ZvBasicString;
using zvutil::experimental::string::case_insensitive_char_traits;
using namespace std::string_literals;

namespace {

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

} // namespace

Q_DECLARE_METATYPE(std::u32string)

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
};

QTEST_APPLESS_MAIN(tst_ZvBasicString)
#include "tst_ZvBasicString.moc"
