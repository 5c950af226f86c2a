// URIs of several threads.

#include <zvutil/uri.h>

#include "support/Threads.h"
#include "support/UriOracle.h"

#include <QTest>

#include <atomic>

using zvtest::Split;
using zvtest::splitByExpression;
using zvtest::splitOf;
using zvutil::uri;

class tst_uri_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsOnSeveralThreadsShareNothing()
    {
        std::atomic<int> wrong{0};
        const auto work = [&wrong] {
            const Split expected = splitByExpression("http://me@srv:8080/p q");
            for (int i = 0; i < 2'000; ++i) {
                if (!(splitOf(uri("http://me@srv:8080/p q")) == expected))
                    ++wrong;
            }
        };
        zvtest::onTwoThreads(work);
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_uri_threads)
#include "tst_uri_threads.moc"
