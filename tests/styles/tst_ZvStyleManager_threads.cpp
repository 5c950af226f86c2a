// The style manager called from another thread.

#include "ManagedStyles.h"

#include <zvutil/ZvStyleManager.h>

#include <zvutil/ZvStyleLibrary.h>

#include "support/StyleHost.h"

#include <QApplication>
#include <QColor>
#include <QTest>

#include <string>
#include <thread>

using libzvutil::styleManager;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using zvtest::inSheet;
using zvtest::Listener;
using zvtest::styleWithPanel;

class tst_ZvStyleManager_threads : public zvtest::StyleManagerTest
{
    Q_OBJECT

private Q_SLOTS:
    void callsFromAnotherThreadComeInTheirOrder()
    {
        Listener listener;
        ZvStyleLibrary library;
        library.update(styleWithPanel("Other", Qt::red));
        std::thread other([&library] {
            for (int i = 0; i < 50; ++i) {
                ZvStyleManager::SetStyle(
                    styleWithPanel(std::to_string(i).c_str(), QColor(i, 0, 0)));
                ZvStyleManager::SetLibrary(library);
                ZvStyleManager::SetStyle(styleWithPanel("Other", QColor(i, 0, 0)));
                ZvStyleManager::Refresh();
            }
        });
        other.join();
        // Nothing has been waited for.
        QVERIFY(listener.events.isEmpty());
        QCoreApplication::sendPostedEvents(&styleManager(), QEvent::MetaCall);
        QStringList expected;
        for (int i = 0; i < 50; ++i)
            expected += {QString("style %1").arg(i), "library", "style Light", "style Other",
                         "style Other"};
        QCOMPARE(listener.events, expected);
        QVERIFY(listener.onManagersThread);
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(49, 0, 0))));
    }
};

QTEST_MAIN(tst_ZvStyleManager_threads)
#include "tst_ZvStyleManager_threads.moc"
