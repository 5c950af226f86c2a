// Strings of several threads.

#include "BasicStringTypes.h"

#include <zvutil/ZvBasicString.h>

#include "support/Conversions.h"
#include "support/Threads.h"

#include <QTest>

#include <atomic>

using zvutil::ZvBasicString;

class tst_ZvBasicString_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

QTEST_APPLESS_MAIN(tst_ZvBasicString_threads)
#include "tst_ZvBasicString_threads.moc"
