// Identifiers of several threads.

#include "UuidTexts.h"

#include <zvutil/ZvUUID.h>

#include "support/StdString.h"
#include "support/Threads.h"

#include <QTest>

#include <atomic>
#include <set>
#include <string>
#include <vector>

using zvtest::textOf;
using zvutil::ZvUUID;

class tst_ZvUUID_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsRepeatNothing()
    {
        constexpr int count = 20'000;
        std::vector<std::string> made(2 * std::size_t(count));
        std::atomic<std::size_t> next{0};
        zvtest::onTwoThreads([&] {
            for (int i = 0; i < count; ++i)
                made[next++] = textOf(ZvUUID());
        });
        QCOMPARE(std::set<std::string>(made.begin(), made.end()).size(), made.size());
    }
};

QTEST_GUILESS_MAIN(tst_ZvUUID_threads)
#include "tst_ZvUUID_threads.moc"
