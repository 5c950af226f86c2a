// The patterns and the filter of the panel with the files.

#include "FilesPanelTest.h"

#include "files/FilteredFilesModel.h"
#include "files/NamePattern.h"
#include "files/RowFilter.h"
#include "files/TypesBox.h"

#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

#include <random>

using zvtest::join;
using zvtest::longWait;
using zvtest::matching;
using namespace workbench;

namespace {

QStringList rowsOf(const FilteredFilesModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.path(model.index(row)));
    return rows;
}

} // namespace

class tst_workbench_files_filter : public zvtest::FilesPanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void patterns_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("matches");
        QTest::newRow("empty") << ""
                               << "a.txt" << true;
        QTest::newRow("empty name") << "a"
                                    << "" << false;
        QTest::newRow("contained") << "lan"
                                   << "Plan.txt" << true;
        QTest::newRow("other case") << "PLAN"
                                    << "my plan.txt" << true;
        QTest::newRow("other case, wildcard") << "*PLAN*"
                                              << "my plan.txt" << true;
        QTest::newRow("umlaut") << "ÄR"
                                << "bär.txt" << true;
        QTest::newRow("umlaut, wildcard") << "*ÄR.txt"
                                          << "bär.txt" << true;
        QTest::newRow("not contained") << "plane"
                                       << "plan.txt" << false;
        QTest::newRow("star at the end is the whole name") << "lan*"
                                                           << "plan.txt" << false;
        QTest::newRow("extension") << "*.txt"
                                   << "plan.txt" << true;
        QTest::newRow("not at the end") << "*.txt"
                                        << "plan.txt.bak" << false;
        QTest::newRow("one character") << "plan?.txt"
                                       << "plan1.txt" << true;
        QTest::newRow("no character") << "plan?.txt"
                                      << "plan.txt" << false;
        QTest::newRow("pair is one character") << "a?b"
                                               << "a😀b" << true;
        QTest::newRow("pair isn't two characters") << "a??b"
                                                   << "a😀b" << false;
        QTest::newRow("star takes nothing") << "a*b"
                                            << "ab" << true;
        QTest::newRow("star goes back") << "*ab*b"
                                        << "aabab" << true;
        QTest::newRow("stars alone") << "**"
                                     << "" << true;
        QTest::newRow("question mark at the end") << "ab?"
                                                  << "ab" << false;
        QTest::newRow("brackets are text") << "[a]"
                                           << "x[a].txt" << true;
        QTest::newRow("brackets are text, wildcard") << "*[a]*"
                                                     << "a.txt" << false;
        QTest::newRow("backslash is text") << R"(a\*)"
                                           << "a*" << false;
        QTest::newRow("blanks count") << "a b"
                                      << "ab" << false;
    }

    void patterns()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, name);
        QTEST(NamePattern(pattern).matches(name), "matches");
    }

    void longPatternsTakeNoTime()
    {
        const QString name(2'000, QLatin1Char('a'));
        const QString stars = QString("*a").repeated(500);
        QVERIFY(NamePattern(stars).matches(name));
        QVERIFY(!NamePattern(stars + QLatin1Char('b')).matches(name));
    }

    void namesAndFolders_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << "/a/b.txt"
                               << "/a"
                               << "b.txt";
        QTest::newRow("root") << "/b.txt"
                              << "/"
                              << "b.txt";
        QTest::newRow("name alone") << "b.txt"
                                    << ""
                                    << "b.txt";
        QTest::newRow("empty") << ""
                               << ""
                               << "";
    }

    void namesAndFolders()
    {
        QFETCH(QString, path);
        QTEST(folderOf(path).toString(), "folder");
        QTEST(fileNameOf(path).toString(), "name");
    }

    void typedTypes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("types");
        QTest::newRow("none") << "" << QStringList();
        QTest::newRow("dot") << ".txt" << QStringList{".txt"};
        QTest::newRow("no dot") << "txt" << QStringList{".txt"};
        QTest::newRow("star") << "*.txt" << QStringList{".txt"};
        QTest::newRow("several") << " .a,b;  *.c " << QStringList{".a", ".b", ".c"};
        QTest::newRow("twice") << "a a" << QStringList{".a"};
        QTest::newRow("any") << "*.* * ." << QStringList();
    }

    void typedTypes()
    {
        QFETCH(QString, text);
        QTEST(TypesBox::typesIn(text), "types");
    }

    void typesAreChosenOrTyped()
    {
        TypesBox box(nullptr);
        QSignalSpy changed(&box, &TypesBox::typesChanged);
        QVERIFY(box.types().isEmpty());
        QCOMPARE(box.currentText(), QString("All files"));
        const auto type = [&box](const QString& text) {
            box.setEditText(text);
            QTest::keyClick(box.lineEdit(), Qt::Key_Return);
        };
        type("documents");
        QCOMPARE(box.types(), (QStringList{".testplan", ".zvsch", ".zvscr", ".txt"}));
        QCOMPARE(box.currentText(), QString("Documents"));
        QCOMPARE(changed.count(), 1);
        type("txt");
        QCOMPARE(box.types(), QStringList{".txt"});
        QCOMPARE(box.currentText(), QString(".txt"));
        QCOMPARE(changed.count(), 2);
        type(".txt ");
        QCOMPARE(changed.count(), 2);
        type("");
        QCOMPARE(box.currentText(), QString("All files"));
        QCOMPARE(changed.count(), 3);
        box.setTypes({".testplan", ".zvsch", ".zvscr", ".txt"});
        QCOMPARE(box.currentText(), QString("Documents"));
        QCOMPARE(changed.count(), 3);
    }

    void filterFollowsItsList()
    {
        QStringListModel source({"/f/a.txt", "/f/b.txt", "/f/b.txt"});
        const RowFilter::Owner filter = RowFilter::make();
        FilteredFilesModel model(nullptr);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        join(*filter, model);
        model.setSource(&source);
        filter->setSource(&source);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), (QStringList{"/f/a.txt", "/f/b.txt"}), longWait);
        QCOMPARE(filter->different(), 2);
        QCOMPARE(filter->lookedAt(), 3);

        source.insertRow(3);
        source.setData(source.index(3), "/f/c.txt");
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model).value(2), QString("/f/c.txt"), longWait);
        filter->setPattern("C");
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/c.txt"}, longWait);
        source.insertRow(0);
        source.setData(source.index(0), "/c/x.txt");
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QCOMPARE(rowsOf(model), QStringList{"/f/c.txt"});
        source.setStringList({"/f/1c", "/c/2"});
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/1c"}, longWait);
        source.removeRow(0);
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QVERIFY(rowsOf(model).isEmpty());
        filter->setSource(nullptr);
        QVERIFY(filter->isDone());
    }

    void filteredFilesShowThemselves()
    {
        QStringListModel source({"/f/g/a.txt"});
        FilteredFilesModel model(nullptr);
        model.setSource(&source);
        model.append({0});
        const QModelIndex index = model.index(0);
        QCOMPARE(index.data().toString(), QString("a.txt"));
        QCOMPARE(index.data(Qt::ToolTipRole).toString(), QString("/f/g/a.txt"));
        QCOMPARE(index.data(FilteredFilesModel::FolderRole).toString(), QString("/f/g"));
        QCOMPARE(index.data(FilteredFilesModel::PathRole).toString(), QString("/f/g/a.txt"));
        QVERIFY(!index.data(Qt::EditRole).isValid());
        QVERIFY(model.path({}).isEmpty());
        model.setSource(nullptr);
        QCOMPARE(model.rowCount(), 0);
    }

    void filterEndsWithTheRightRowsWhateverHappens()
    {
        std::mt19937 random(20261121);
        const auto number = [&random](int below) { return int(random() % unsigned(below)); };
        for (int round = 0; round < 30; ++round) {
            QStringList all;
            QStringListModel source;
            const RowFilter::Owner filter = RowFilter::make();
            FilteredFilesModel model(nullptr);
            join(*filter, model);
            model.setSource(&source);
            filter->setSource(&source);
            QString pattern;
            for (int change = 0; change < 12; ++change) {
                if (number(3) == 0) {
                    pattern = QString::number(number(20));
                    filter->setPattern(pattern);
                } else {
                    const int first = source.rowCount();
                    const int count = number(3'000);
                    source.insertRows(first, count);
                    for (int row = first; row < first + count; ++row)
                        source.setData(source.index(row), QString("/f/%1.txt").arg(row));
                }
                if (number(2) == 0)
                    QTest::qWait(number(3));
            }
            QTRY_VERIFY_WITH_TIMEOUT(filter->isDone() && !filter->running(), longWait);
            QCOMPARE(rowsOf(model), matching(source.stringList(), pattern));
        }
    }

    void filterMayGoWhileItRuns()
    {
        QStringList rows;
        for (int i = 0; i < 100'000; ++i)
            rows.append(QString("/f/%1.txt").arg(i));
        QStringListModel source(rows);
        RowFilter::Owner filter = RowFilter::make();
        const QPointer<RowFilter> seen(filter.get());
        filter->setSource(&source);
        bool wentWhileItRan = false;
        connect(filter.get(), &ZvAbstractIterativeProcess::started, &source, [&] {
            QMetaObject::invokeMethod(
                &source,
                [&] {
                    wentWhileItRan = filter->running();
                    filter.reset();
                },
                Qt::QueuedConnection);
        });
        QTRY_VERIFY_WITH_TIMEOUT(!filter, longWait);
        QVERIFY(wentWhileItRan);
        QTRY_VERIFY_WITH_TIMEOUT(!seen, longWait);
    }
};

QTEST_MAIN(tst_workbench_files_filter)

#include "tst_workbench_files_filter.moc"
