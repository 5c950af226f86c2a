// In a program of its own: which locale folds is decided once per process.

#include <zvutil/ZvBasicString.h>

#include <QTest>

#include <clocale>
#include <locale>
#include <string>

using zvutil::ZvBasicString;

class tst_ZvBasicString_setlocale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void localeOfTheCLibraryDoesNotFold()
    {
        QVERIFY(std::locale() == std::locale::classic());
        // In the system's language it knows letters beyond ASCII, on Windows at least.
        QVERIFY(std::setlocale(LC_ALL, ""));
        QVERIFY(ZvBasicString<wchar_t>(L"az") == L"AZ");
        QVERIFY(ZvBasicString<char16_t>(u"az") == u"AZ");
        for (const int unit : {0xE4, 0x431, 0x3B1}) {
            const std::wstring lower{static_cast<wchar_t>(unit)};
            const std::wstring upper{static_cast<wchar_t>(unit - 0x20)};
            QVERIFY(!(ZvBasicString<wchar_t>(lower) == upper));
            QVERIFY(!(ZvBasicString<char16_t>({lower.begin(), lower.end()})
                      == std::u16string(upper.begin(), upper.end())));
        }
        for (const wchar_t unit : {L'`', L'{', L'@', L'['})
            QVERIFY(!(ZvBasicString<wchar_t>({unit}) == std::wstring{wchar_t(unit ^ 0x20)}));
    }
};

QTEST_APPLESS_MAIN(tst_ZvBasicString_setlocale)
#include "tst_ZvBasicString_setlocale.moc"
