// The conversions between narrow and wide strings.

#include "BasicStringTypes.h"

#include <zvutil/ZvBasicString.h>

#include "support/Conversions.h"
#include "support/StdString.h"
#include "support/Threads.h"

#include <QTest>

#include <array>
#include <clocale>
#include <limits>
#include <string>
#include <type_traits>

using zvtest::converted;
using zvtest::disagreement;
using zvtest::forType;
using zvtest::hex;
using zvtest::units;
using zvtest::unlessBad;
using zvutil::ZvBasicString;
using namespace std::string_literals;

namespace {

constexpr char fails[] = "fails";

} // namespace

Q_DECLARE_METATYPE(std::u32string)

class tst_ZvBasicString_conversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_APPLESS_MAIN(tst_ZvBasicString_conversion)
#include "tst_ZvBasicString_conversion.moc"
