// The order of the files in their panel.

#include "FilesPanelTest.h"

#include "files/FilesSorter.h"
#include "files/FilteredFilesModel.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QPersistentModelIndex>
#include <QSettings>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

#include <algorithm>
#include <numeric>

Q_DECLARE_METATYPE(workbench::FilesOrder)

using workbench::FilesOrder;
using workbench::FilesSorter;
using workbench::FilteredFilesModel;
using zvtest::longWait;
using zvtest::Panel;

namespace {

QStringList namesOf(const QStringList& paths)
{
    QStringList names;
    for (const QString& path : paths)
        names.append(path.mid(path.lastIndexOf(QRegExp("[/\\\\]")) + 1));
    return names;
}

/// Rows of a list, shown in an order.
class Rows
{
public:
    explicit Rows(const QStringList& paths)
        : source(paths)
    {
        model.setSource(&source);
        std::vector<int> rows(std::size_t(paths.size()));
        std::iota(rows.begin(), rows.end(), 0);
        model.append(rows);
    }

    /// Sorts, and returns whether that came to an end.
    bool sort(FilesOrder order)
    {
        QSignalSpy sorted(&sorter, &FilesSorter::sorted);
        sorter.setOrder(order);
        sorter.sort();
        return QTest::qWaitFor([&] { return sorted.count() == 1; }, longWait)
            && !sorter.isSorting();
    }

    QStringListModel source;
    FilteredFilesModel model{nullptr};
    FilesSorter& sorter = *new FilesSorter(model); // the model owns it
};

} // namespace

class tst_workbench_files_order : public zvtest::FilesPanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void sorts_data()
    {
        QTest::addColumn<FilesOrder>("order");
        QTest::addColumn<QStringList>("sorted");
        QTest::newRow("by name") << FilesOrder::Name
                                 << QStringList{"/b/a.txt", "/a/file 2", "/a/File 10", "/a/z",
                                                "/b/Z"};
        QTest::newRow("by folder")
            << FilesOrder::Folder
            << QStringList{"/a/file 2", "/a/File 10", "/a/z", "/b/a.txt", "/b/Z"};
    }

    void sorts()
    {
        QFETCH(FilesOrder, order);
        QFETCH(QStringList, sorted);
        Rows rows({"/b/Z", "/a/z", "/a/File 10", "/b/a.txt", "/a/file 2"});
        QVERIFY(rows.sort(order));
        QCOMPARE(rows.model.paths(), sorted);
    }

    void theLastChangedComesFirst()
    {
        zvtest::FileTree tree;
        QStringList paths;
        for (const int age : {3, 1, 2}) {
            tree.file(QString("%1.txt").arg(age));
            const QString path = tree.path(QString("%1.txt").arg(age));
            paths.append(path);
            QFile file(path);
            QVERIFY2(file.open(QIODevice::ReadWrite), qPrintable(path));
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-age),
                                     QFileDevice::FileModificationTime));
        }
        Rows rows(paths);
        QVERIFY(rows.sort(FilesOrder::Date));
        QCOMPARE(namesOf(rows.model.paths()), (QStringList{"1.txt", "2.txt", "3.txt"}));
    }

    void aFileIsShownOnce()
    {
        Rows rows({"/a/b", "/a/c", "/a/a", "/a/c", "/a/b", "/a/c"});
        const QPersistentModelIndex removed = rows.model.index(5);
        QVERIFY(rows.sort(FilesOrder::Name));
        QCOMPARE(rows.model.paths(), (QStringList{"/a/a", "/a/b", "/a/c"}));
        QVERIFY(!removed.isValid());
    }

    void indexesFollowTheirFiles()
    {
        Rows rows({"/3", "/1", "/2", "/1"});
        const QPersistentModelIndex three = rows.model.index(0);
        const QPersistentModelIndex two = rows.model.index(2);
        QVERIFY(rows.sort(FilesOrder::Name));
        QCOMPARE(rows.model.path(three), QString("/3"));
        QCOMPARE(rows.model.path(two), QString("/2"));
        QCOMPARE(two.row(), 1);
        rows.sorter.setOrder(FilesOrder::Found);
        rows.sorter.sort();
        QCOMPARE(rows.model.paths(), (QStringList{"/3", "/1", "/2"}));
        QCOMPARE(three.row(), 0);
    }

    void aModelThatHasChangedIsNotSortedByTheOldOrder()
    {
        Rows rows({"/b", "/a"});
        QSignalSpy sorted(&rows.sorter, &FilesSorter::sorted);
        rows.sorter.sort();
        QVERIFY(rows.sorter.isSorting());
        rows.sorter.cancel();
        rows.model.clear();
        QVERIFY(!rows.sorter.isSorting());
        // A second one comes after what the first has sent.
        rows.model.append({0});
        rows.sorter.sort();
        QVERIFY(QTest::qWaitFor([&] { return sorted.count() == 1; }, longWait));
        QCOMPARE(rows.model.paths(), QStringList{"/b"});
    }

    void tooManyFilesStayAsFound()
    {
        QStringList paths;
        for (int i = FilesSorter::maxFiles; i >= 0; --i)
            paths.append(QString("/%1").arg(i));
        Rows rows(paths);
        rows.sorter.sort();
        QVERIFY(!rows.sorter.isSorting());
        QCOMPARE(rows.model.path(rows.model.index(0)), paths.constFirst());
        paths.removeLast();
        Rows fewer(paths);
        QVERIFY(fewer.sort(FilesOrder::Name));
        QCOMPARE(fewer.model.path(fewer.model.index(0)), QString("/1"));
    }

    void thePanelSortsWhatItFinds()
    {
        zvtest::FileTree tree;
        tree.files(12, "inner/%1.txt");
        const Panel panel;
        panel.setOrder(FilesOrder::Name);
        // The outer folder has the files of the inner one once more.
        panel.panel->addFolders({tree.path("inner"), tree.path()});
        QStringList expected;
        for (int i = 0; i < 12; ++i)
            expected.append(QString("%1.txt").arg(i));
        // The list model has the last folder in another one as a file.
        expected.append("inner");
        QVERIFY(QTest::qWaitFor(
            [&] { return !panel.panel->isWorking() && namesOf(panel.shown()) == expected; },
            longWait));
        QTRY_COMPARE(panel.status()->text(), QString("13 files"));
        panel.search()->setText("1");
        QVERIFY(QTest::qWaitFor(
            [&] {
                return !panel.panel->isWorking()
                    && namesOf(panel.shown()) == QStringList{"1.txt", "10.txt", "11.txt"};
            },
            longWait));
    }

    void theOrderIsKept()
    {
        const QTemporaryDir folder;
        QSettings settings(folder.filePath("state.ini"), QSettings::IniFormat);
        {
            const Panel panel;
            panel.setOrder(FilesOrder::Date);
            panel.panel->saveState(settings);
        }
        const Panel panel;
        panel.panel->restoreState(settings);
        QCOMPARE(panel.child<QComboBox>("order")->currentData().toInt(), int(FilesOrder::Date));
        settings.setValue("Files/order", 99);
        panel.panel->restoreState(settings);
        QCOMPARE(panel.child<QComboBox>("order")->currentData().toInt(), int(FilesOrder::Name));
    }
};

QTEST_MAIN(tst_workbench_files_order)
#include "tst_workbench_files_order.moc"
