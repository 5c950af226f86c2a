// The search in files, which runs on a thread of its own.

#include "FindTest.h"

#include "files/TypesBox.h"
#include "search/FindInFilesDialog.h"
#include "search/HitsModel.h"

#include "support/Background.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using zvtest::Finder;
using zvtest::write;
using namespace workbench;

class tst_workbench_find_threads : public zvtest::FindTest
{
    Q_OBJECT

private Q_SLOTS:
    void findsInFiles()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), "one\nNeedle\nthree");
        write(tree.path("sub/b.zvscr"), "needle needle\n\nneedle");
        write(tree.path("sub/c.txt"), "nothing");
        write(tree.path("z.bin"), QByteArray("needle\0needle", 13));
        Finder finder({tree.path()});
        const auto* const model = qobject_cast<HitsModel*>(finder.view()->model());
        const QAbstractItemModelTester tester(
            const_cast<HitsModel*>(model), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(finder.status(), QString("Type the text to search for."));
        QVERIFY(!finder.button("find")->isEnabled());
        QSignalSpy ended(finder.dialog.get(), &FindInFilesDialog::searchEnded);
        QTest::keyClicks(finder.text(), "needle");
        QTest::keyClick(finder.text(), Qt::Key_Return);
        QVERIFY(finder.dialog->isSearching());
        QVERIFY(finder.button("cancel")->isEnabled());
        QVERIFY(finder.ends());
        QCOMPARE(ended.count(), 1);
        QVERIFY(!finder.button("cancel")->isEnabled());
        QCOMPARE(finder.hits(), (QStringList{"a.txt:2", "b.zvscr:1", "b.zvscr:3"}));
        QCOMPARE(finder.status(), QString("3 lines in 2 of 4 files."));
        QVERIFY(!finder.button("unreadable")->isVisible());
        const QModelIndex hit = model->index(1, HitsModel::FileColumn);
        QCOMPARE(hit.data(Qt::ToolTipRole).toString(),
                 QDir::toNativeSeparators(tree.path("sub/b.zvscr")));
        QCOMPARE(hit.siblingAtColumn(HitsModel::TextColumn).data().toString(),
                 QString("needle needle"));

        finder.child<QCheckBox>(QString("matchCase"))->setChecked(true);
        QVERIFY(finder.finds("Needle"));
        QCOMPARE(finder.hits(), QStringList{"a.txt:2"});
        finder.child<QCheckBox>(QString("matchCase"))->setChecked(false);
        finder.child<TypesBox>(QString("types"))->setTypes({".ZVSCR"});
        QVERIFY(finder.finds("Needle"));
        QCOMPARE(finder.hits(), (QStringList{"b.zvscr:1", "b.zvscr:3"}));
        QVERIFY(finder.finds("no such text"));
        QVERIFY(finder.hits().isEmpty());
        QCOMPARE(finder.status(), QString("0 lines in 0 of 1 file."));
    }

    void searchIsCancelledAtAnyMoment()
    {
        zvtest::FileTree tree;
        for (int i = 0; i < 60; ++i)
            write(tree.path(QString("%1/a.txt").arg(i)), QByteArray("needle\n").repeated(100));
        write(tree.path("0/large.txt"), QByteArray("hay ").repeated(4'000'000));
        Finder finder({tree.path()});
        int cancelled = 0;
        for (int i = 0; i < 40; ++i) {
            finder.text()->setText("needle");
            finder.button("find")->click();
            QTest::qWait(i);
            if (!finder.dialog->isSearching())
                continue;
            switch (i % 4) {
            case 0:
                finder.button("cancel")->click();
                break;
            case 1:
                QTest::keyClick(finder.dialog.get(), Qt::Key_Escape);
                break;
            case 2:
                finder.dialog->close();
                break;
            default:
                // The next search ends this one.
                continue;
            }
            ++cancelled;
            QVERIFY(!finder.dialog->isSearching());
            QVERIFY2(finder.status().startsWith("Cancelled: "), qPrintable(finder.status()));
            const int hits = finder.view()->model()->rowCount();
            QTest::qWait(5);
            QCOMPARE(finder.view()->model()->rowCount(), hits);
            finder.dialog->show();
        }
        QVERIFY(cancelled > 0);
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.view()->model()->rowCount(), 6'000);
        QCOMPARE(finder.status(), QString("6,000 lines in 60 of 61 files."));
    }

    void newSearchReplacesTheOldOne()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), QByteArray("one\ntwo\n").repeated(2'000));
        Finder finder({tree.path()});
        for (int i = 0; i < 20; ++i) {
            finder.text()->setText(i % 2 == 0 ? QString("one") : QString("two"));
            finder.dialog->find();
        }
        QVERIFY(finder.ends());
        QCOMPARE(finder.view()->model()->rowCount(), 2'000);
        QCOMPARE(finder.hits().first(), QString("a.txt:2"));
    }

    void dialogMayGoWhileItSearches()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), QByteArray("needle hay\n").repeated(1'000'000));
        for (int i = 0; i < 20; ++i) {
            Finder finder({tree.path()});
            finder.text()->setText(i % 2 == 0 ? QString("needle") : QString("nothing"));
            finder.dialog->find();
            QTest::qWait(i);
        }
    }
};

QTEST_MAIN(tst_workbench_find_threads)

#include "tst_workbench_find_threads.moc"
