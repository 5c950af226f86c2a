// The panel's listing, which runs on a thread of its own.

#include "FilesPanelTest.h"

#include "files/FilesPanel.h"

#include "support/FileTree.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QSignalSpy>
#include <QTest>

using zvtest::listed;
using zvtest::longWait;
using zvtest::manyFiles;
using zvtest::matching;
using zvtest::Panel;
using namespace workbench;

class tst_workbench_files_threads : public zvtest::FilesPanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void listsAndFilters()
    {
        zvtest::FileTree tree;
        tree.files(300, "plan %1.testplan");
        tree.files(200, "sub/sheet %1.zvsch");
        const Panel panel;
        QSignalSpy foldersChanged(panel.panel.get(), &FilesPanel::foldersChanged);
        panel.panel->addFolders({tree.path()});
        QCOMPARE(foldersChanged.count(), 1);
        QCOMPARE(panel.panel->folders(), QStringList{tree.path()});
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.stop()->isVisible());
        const QStringList all = listed({tree.path()});
        QVERIFY(all.size() >= 499);
        QVERIFY(panel.comesToShow(all));
        QCOMPARE(panel.status()->text(), QString("%1 files").arg(all.size()));
        QVERIFY(!panel.stop()->isVisible());

        QTest::keyClicks(panel.search(), "PLAN 1");
        const QStringList plans = matching(all, "plan 1");
        QVERIFY(plans.size() > 100);
        QVERIFY(panel.comesToShow(plans));
        QCOMPARE(panel.status()->text(),
                 QString("%1 of %2 files").arg(plans.size()).arg(all.size()));
        QTest::keyClick(panel.search(), Qt::Key_Escape);
        QVERIFY(panel.search()->text().isEmpty());
        QVERIFY(panel.comesToShow(all));
        panel.search()->setText("*9.zvsch");
        QVERIFY(panel.comesToShow(matching(all, "*9.zvsch")));
        panel.search()->setText("nothing of this kind");
        QVERIFY(panel.comesToShow({}));
        panel.search()->clear();

        panel.types()->setEditText("zvsch");
        QTest::keyClick(panel.types()->lineEdit(), Qt::Key_Return);
        QCOMPARE(panel.panel->types(), QStringList{".zvsch"});
        QVERIFY(panel.comesToShow(listed({tree.path()}, {".zvsch"})));
    }

    void listingStops()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles, "d/%1.txt");
        tree.files(2);
        const Panel panel;
        panel.panel->addFolders({tree.path()});
        QTest::mouseClick(panel.stop(), Qt::LeftButton);
        QVERIFY(!panel.panel->isWorking());
        QVERIFY(!panel.stop()->isVisible());
        const QString stopped = "Listing stopped. Press Reload to list the folders again.";
        QCOMPARE(panel.status()->text(), stopped);
        QTest::qWait(100);
        QVERIFY(panel.shown().isEmpty());
        QCOMPARE(panel.status()->text(), stopped);
        panel.panel->stop();
        QCOMPARE(panel.status()->text(), stopped);
        QVERIFY(panel.activate());
        QTest::keyClick(panel.view(), Qt::Key_R, Qt::ControlModifier);
        QVERIFY(panel.panel->isWorking());
        QVERIFY(panel.comesToShow(listed({tree.path()})));
    }

    void filterChangesWhileFilesAreListed()
    {
        zvtest::FileTree tree;
        for (int folder = 0; folder < 20; ++folder)
            tree.files(manyFiles / 20, QString("%1/%2.txt").arg(folder).arg("%1"));
        const QStringList all = listed({tree.path()});
        QVERIFY(all.size() >= manyFiles - 1);
        const QStringList texts = {"", "1", "12", "*3.txt", "99", "?.txt", "x"};
        for (int i = 0; i < texts.size() * 3; ++i) {
            const Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.search()->setText(texts[(i + 3) % texts.size()]);
            QTest::qWait(i * 2);
            const QString& text = texts[i % texts.size()];
            panel.search()->setText(text);
            QVERIFY2(panel.comesToShow(matching(all, text)),
                     qPrintable(text + " " + panel.status()->text()));
        }
    }

    void panelMayGoAtAnyMoment()
    {
        zvtest::FileTree tree;
        tree.files(manyFiles / 4);
        for (int i = 0; i < 60; ++i) {
            Panel panel;
            panel.panel->addFolders({tree.path()});
            panel.search()->setText(QString::number(i % 3));
            if (i % 2 == 0) {
                QTest::qWait(i);
                panel.panel.reset();
                continue;
            }
            // From within the events between two steps of the filter.
            QTimer::singleShot(i, panel.panel.get(), [&panel] { panel.panel.reset(); });
            QTRY_VERIFY_WITH_TIMEOUT(!panel.panel, longWait);
        }
    }
};

QTEST_MAIN(tst_workbench_files_threads)

#include "tst_workbench_files_threads.moc"
