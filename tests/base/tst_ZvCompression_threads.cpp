// Compressing on several threads.

#include "CompressionFiles.h"

#include <zvutil/ZvCompression.h>

#include "support/Files.h"
#include "support/Threads.h"

#include <QTest>

#include <atomic>

using zvtest::contentOf;
using zvtest::path;
using zvtest::randomBytes;
using zvtest::writeTo;
using zvtest::Zlib;

class tst_ZvCompression_threads : public zvtest::CompressionTest
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsShareNothing()
    {
        QVERIFY(writeTo(file("source"), randomBytes(100'000)));
        std::atomic<int> thread{0};
        zvtest::onTwoThreads([&] {
            const QString name = file("target") + QString::number(++thread);
            for (int i = 0; i < 10; ++i) {
                ZvCompression::compress(path(file("source")), path(name), Zlib, 1);
                ZvCompression::decompress(path(name), path(name + QLatin1Char('x')), Zlib);
            }
        });
        QVERIFY(contentOf(file("target1x")) == randomBytes(100'000));
        QVERIFY(contentOf(file("target2x")) == randomBytes(100'000));
    }
};

QTEST_GUILESS_MAIN(tst_ZvCompression_threads)
#include "tst_ZvCompression_threads.moc"
