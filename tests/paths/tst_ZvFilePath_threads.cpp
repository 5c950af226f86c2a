// File paths of several threads.

#include "FilePathTexts.h"

#include <zvutil/ZvFilePath.h>

#include "support/Threads.h"

#include <QTest>
#include <QVariant>

#include <atomic>

using zvutil::ZvFilePath;

class tst_ZvFilePath_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsShareNothing()
    {
        const ZvFilePath shared(L"C:\\a\\b.zvsch");
        std::atomic<int> wrong{0};
        const auto work = [&wrong, &shared] {
            for (int i = 0; i < 2'000; ++i) {
                ZvFilePath mine = shared;
                mine = mine.parentPath();
                mine /= shared.filename();
                if (mine != shared || QVariant::fromValue(mine).toString().size() != 12)
                    ++wrong;
            }
        };
        zvtest::onTwoThreads(work);
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_ZvFilePath_threads)
#include "tst_ZvFilePath_threads.moc"
