// In a program of its own: which locale folds is decided once per process.

#include <zvutil/ZvBasicString.h>
#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include <QTest>

#include <cstdlib>
#include <locale>
#include <string>

using zvutil::ZvBasicString;
using zvutil::experimental::string::case_insensitive_char_traits;

namespace {

int asked = 0;
int facets = 0;

/// Folds `x` to `y`, 0xE4 to 0xC4 and, where there is such a unit, 0x431 to 0x411, and nothing
/// else.
template <typename Unit>
class OddCase : public std::ctype<Unit>
{
public:
    OddCase() { ++facets; }
    ~OddCase() override { --facets; }

    OddCase(const OddCase&) = delete;
    OddCase& operator=(const OddCase&) = delete;

protected:
    Unit do_toupper(Unit unit) const override
    {
        ++asked;
        if (unit == Unit('x'))
            return Unit('y');
        if (unit == static_cast<Unit>(0xE4))
            return static_cast<Unit>(0xC4);
        return sizeof(Unit) > 1 && unit == static_cast<Unit>(0x431) ? static_cast<Unit>(0x411)
                                                                    : unit;
    }
    const Unit* do_toupper(Unit* begin, const Unit* end) const override
    {
        for (; begin != end; ++begin)
            *begin = do_toupper(*begin);
        return end;
    }
};

std::locale oddLocale()
{
    const std::locale narrow(std::locale::classic(), new OddCase<char>);
    return std::locale(narrow, new OddCase<wchar_t>);
}

template <typename C>
std::basic_string<C> of(unsigned unit)
{
    return std::basic_string<C>(1, static_cast<C>(unit));
}

template <typename C>
bool equal(unsigned a, unsigned b)
{
    return ZvBasicString<C>(of<C>(a)) == of<C>(b);
}

/// Nothing of this looks at a single unit.
template <typename C>
bool lengthsDecide()
{
    const C unit = C('x');
    const ZvBasicString<C> empty;
    return empty == ZvBasicString<C>() && !(empty == of<C>('x'))
        && !(ZvBasicString<C>(of<C>('x')) == of<C>('x') + of<C>('x'))
        && case_insensitive_char_traits<C>::compare(&unit, &unit, 0) == 0;
}

/// Compares when all that the first comparison has made would have been destroyed, if it were.
class LastComparison
{
public:
    LastComparison() = default;
    LastComparison(const LastComparison&) = delete;
    LastComparison& operator=(const LastComparison&) = delete;

    ~LastComparison()
    {
        // Qt Test has counted its failures by now.
        if (asked > 0 && (facets == 0 || !foldsAll()))
            std::_Exit(1);
    }

private:
    static bool foldsAll()
    {
        return equal<char>('x', 'y') && equal<char16_t>('x', 'y') && equal<char32_t>('x', 'y')
            && equal<wchar_t>('x', 'y') && !equal<char>('x', 'X') && !equal<wchar_t>('x', 'X');
    }
};

// Made before the first comparison, and so destroyed behind what that makes.
const LastComparison lastComparison;

} // namespace

class tst_ZvBasicString_locale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // These two run in this order.
    void nothingIsFoldedWhereLengthsDecide()
    {
        // If one of these decided, it would be on a locale that the next test doesn't expect.
        QVERIFY(lengthsDecide<char>() && lengthsDecide<char16_t>());
        QVERIFY(lengthsDecide<char32_t>() && lengthsDecide<wchar_t>());
        std::locale::global(oddLocale());
        QVERIFY(lengthsDecide<char>() && lengthsDecide<char16_t>());
        QVERIFY(lengthsDecide<char32_t>() && lengthsDecide<wchar_t>());
        QCOMPARE(asked, 0);
    }

    void firstComparisonDecidesOnTheLocale()
    {
        std::locale::global(oddLocale());
        QVERIFY(equal<char>('x', 'y') && equal<char16_t>('x', 'y'));
        QVERIFY(equal<char32_t>('x', 'y') && equal<wchar_t>('x', 'y'));
        QVERIFY(asked > 0);
        std::locale::global(std::locale::classic());
        QVERIFY(equal<char>('x', 'y') && equal<char16_t>('x', 'y'));
        QVERIFY(equal<char32_t>('x', 'y') && equal<wchar_t>('x', 'y'));
        QVERIFY(!equal<char>('a', 'A') && !equal<wchar_t>('a', 'A'));
    }

    void unitsAreFoldedByTheFacetThatIsTold()
    {
        QVERIFY(equal<char>(0xE4, 0xC4));
        QVERIFY(equal<char16_t>(0xE4, 0xC4) && equal<wchar_t>(0xE4, 0xC4));
        QVERIFY(equal<char16_t>(0x431, 0x411) && equal<wchar_t>(0x431, 0x411));
        // A 32-bit unit is folded as a byte if it is one, and else not at all.
        QVERIFY(equal<char32_t>(0xE4, 0xC4));
        QVERIFY(!equal<char32_t>(0x431, 0x411));
        QVERIFY(!equal<char32_t>(0x1E4, 0x1C4));
    }
};

QTEST_APPLESS_MAIN(tst_ZvBasicString_locale)
#include "tst_ZvBasicString_locale.moc"
