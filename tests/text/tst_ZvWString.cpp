#include <zvutil/ZvWString.h>

#include <QString>
#include <QTest>

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

using libzvutil::ZvAbstractString;
using libzvutil::ZvWString;
using namespace std::string_literals;

Q_DECLARE_METATYPE(std::wstring)
Q_DECLARE_METATYPE(std::function<void(ZvWString&)>)

namespace QTest {

template <>
char* toString(const std::wstring& text)
{
    return qstrdup(QString::fromStdWString(text).toUtf8().toPercentEncoding(" ").constData());
}

} // namespace QTest

namespace {

static_assert(sizeof(ZvWString) == 2 * sizeof(void*));
static_assert(std::is_base_of_v<ZvAbstractString, ZvWString>);
static_assert(std::is_nothrow_move_constructible_v<ZvWString>);
static_assert(!std::is_copy_assignable_v<ZvWString>);
static_assert(!std::is_move_assignable_v<ZvWString>);

/// All units, NULs included.
std::wstring units(const ZvWString& text)
{
    return {text.c_str(), text.size()};
}

/// A text that holds "ab", a NUL and "cd".
ZvWString withNul()
{
    ZvWString text(L"ab");
    text += L'\0';
    text += L"cd";
    return text;
}

/// What a value above 0xFFFF is where `wchar_t` can hold it.
std::wstring wideValue(char32_t value)
{
    return std::wstring(1, static_cast<wchar_t>(value));
}

} // namespace

class tst_ZvWString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction()
    {
        QCOMPARE(units(ZvWString()), L""s);
        QCOMPARE(units(ZvWString(L"abc")), L"abc"s);
        QCOMPARE(units(ZvWString(L"ab\0c")), L"ab"s);
        QCOMPARE(units(ZvWString(L"abc"s)), L"abc"s);
        QCOMPARE(units(ZvWString(L"ab\0c"s)), L"ab"s);
        QCOMPARE(units(ZvWString(L"\0c"s)), L""s);
        const std::wstring longText(1'000'000, L'\x20AC');
        QCOMPARE(units(ZvWString(longText)), longText);
    }

    void unitsHave16Bits()
    {
        const std::wstring clef = L"\xD834\xDD1E"s;
        QCOMPARE(units(ZvWString(L"\U0001D11E")), clef);
        QCOMPARE(units(ZvWString(L"\U0001D11E"s)), clef);
        QCOMPARE(units(ZvWString(clef)), clef);
        QCOMPARE(units(ZvWString(L"\xD834")), L"\xD834"s);
        ZvWString text;
        text += L"\U0001D11E";
        QCOMPARE(text.size(), std::size_t(2));
        if constexpr (sizeof(wchar_t) > 2) {
            text += wideValue(0x1D11E)[0];
            QCOMPARE(units(text), clef + clef);
            QCOMPARE(units(ZvWString(wideValue(0x110000))), L"\xFFFD"s);
            QCOMPARE(units(ZvWString(wideValue(0xFFFFFFFF))), L"\xFFFD"s);
            QCOMPARE(units(ZvWString(wideValue(0x10FFFF))), L"\xDBFF\xDFFF"s);
        }
    }

    void resize()
    {
        ZvWString text(L"abc");
        text.resize(5);
        QCOMPARE(units(text), L"abc\0\0"s);
        QCOMPARE(std::wstring(text.c_str()), L"abc"s);
        QCOMPARE(units(ZvWString(text)), L"abc"s);
        text.resize(2);
        QCOMPARE(units(text), L"ab"s);
        text.resize(0);
        QCOMPARE(text.size(), std::size_t(0));
    }

    void copyEndsAtTheFirstNulAndSharesNothing()
    {
        ZvWString source = withNul();
        const ZvWString copy(source);
        QCOMPARE(units(copy), L"ab"s);
        source += L"x";
        QCOMPARE(units(copy), L"ab"s);
    }

    void moves()
    {
        ZvWString source = withNul();
        const wchar_t* const place = source.c_str();
        ZvWString target(std::move(source));
        QVERIFY(target.c_str() == place);
        QCOMPARE(units(target), L"ab\0cd"s);
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        const ZvWString empty(std::move(source));
    }

    void appending_data()
    {
        using Append = std::function<void(ZvWString&)>;
        QTest::addColumn<Append>("append");
        QTest::addColumn<std::wstring>("result");
        const auto row = [](const char* name, const Append& append, const std::wstring& result) {
            QTest::newRow(name) << append << result;
        };
        row(
            "text", [](ZvWString& s) { s += ZvWString(L"def"); }, L"abcdef"s);
        row(
            "text with a NUL", [](ZvWString& s) { s += withNul(); }, L"abcab"s);
        row(
            "itself", [](ZvWString& s) { s += s; }, L"abcabc"s);
        row(
            "pointer", [](ZvWString& s) { s += L"def"; }, L"abcdef"s);
        row(
            "pointer into itself", [](ZvWString& s) { s += s.c_str() + 1; }, L"abcbc"s);
        row(
            "standard string", [](ZvWString& s) { s += L"def"s; }, L"abcdef"s);
        row(
            "standard string with a NUL", [](ZvWString& s) { s += L"d\0e"s; }, L"abcd"s);
        row(
            "unit", [](ZvWString& s) { s += L'd'; }, L"abcd"s);
        row(
            "NUL", [](ZvWString& s) { s += L'\0'; }, L"abc\0"s);
        row(
            "behind a NUL",
            [](ZvWString& s) {
                s.resize(4);
                s += L"d";
            },
            L"abc\0d"s);
        row(
            "Qt", [](ZvWString& s) { s += "\u00E4\u20AC"; }, L"abc\xE4\x20AC"s);
        row(
            "pair of Qt", [](ZvWString& s) { s += QString::fromUtf8("\xF0\x9D\x84\x9E"); },
            L"abc\xD834\xDD1E"s);
        row(
            "null of Qt", [](ZvWString& s) { s += QString(); }, L"abc"s);
        row(
            "Qt with a NUL", [](ZvWString& s) { s += QString("d") + QChar(0) + "e"; }, L"abcd"s);
        row(
            "unpaired surrogate of Qt", [](ZvWString& s) { s += QString(QChar(0xD800)); },
            sizeof(wchar_t) > 2 ? L"abc\xFFFD"s : L"abc\xD800"s);
        row(
            "several", [](ZvWString& s) { ((s += L"d") += L'e') += "f"; }, L"abcdef"s);
    }

    void appending()
    {
        QFETCH(std::function<void(ZvWString&)>, append);
        QFETCH(std::wstring, result);
        ZvWString text(L"abc");
        append(text);
        QCOMPARE(units(text), result);
    }

    void appendingALongTextToItself()
    {
        ZvWString text(std::wstring(1000, L'\x20AC'));
        for (int i = 0; i < 5; ++i)
            text += text;
        QCOMPARE(units(text), std::wstring(32'000, L'\x20AC'));
    }
};

QTEST_APPLESS_MAIN(tst_ZvWString)
#include "tst_ZvWString.moc"
