// Compressing on several threads.

#include "CompressionFiles.h"

#include <zvutil/ZvCompression.h>

#include "support/Threads.h"

#include <QTest>

#include <atomic>

using zvtest::content;
using zvtest::path;
using zvtest::randomBytes;
using zvtest::write;
using zvtest::Zlib;

class tst_ZvCompression_threads : public zvtest::CompressionTest
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsShareNothing()
    {
        QVERIFY(write(file("source"), randomBytes(100'000)));
        std::atomic<int> thread{0};
        zvtest::onTwoThreads([&] {
            const QString name = file("target") + QString::number(++thread);
            for (int i = 0; i < 10; ++i) {
                ZvCompression::compress(path(file("source")), path(name), Zlib, 1);
                ZvCompression::decompress(path(name), path(name + QLatin1Char('x')), Zlib);
            }
        });
        QVERIFY(content(file("target1x")) == randomBytes(100'000));
        QVERIFY(content(file("target2x")) == randomBytes(100'000));
    }
};

QTEST_GUILESS_MAIN(tst_ZvCompression_threads)
#include "tst_ZvCompression_threads.moc"
