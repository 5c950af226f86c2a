// Strings of several threads.

#include <zvutil/ZvString.h>

#include "support/Threads.h"

#include <QTest>

using libzvutil::ZvString;

class tst_ZvString_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severalThreadsShareNothing()
    {
        const ZvString source("abc");
        zvtest::onTwoThreads([&source] {
            for (int i = 0; i < 1000; ++i) {
                ZvString copy(source);
                copy += source;
                if (copy.compare("ABCabc") != 0)
                    qFatal("a copy has changed on the way");
            }
        });
    }
};

QTEST_APPLESS_MAIN(tst_ZvString_threads)
#include "tst_ZvString_threads.moc"
