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
using namespace zvtest::literals;

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
        QTest::newRow("empty") << ""_q
                               << "a.txt"_q << true;
        QTest::newRow("empty name") << "a"_q
                                    << ""_q << false;
        QTest::newRow("contained") << "lan"_q
                                   << "Plan.txt"_q << true;
        QTest::newRow("other case") << "PLAN"_q
                                    << "my plan.txt"_q << true;
        QTest::newRow("other case, wildcard") << "*PLAN*"_q
                                              << "my plan.txt"_q << true;
        QTest::newRow("umlaut") << "ÄR"_q
                                << "bär.txt"_q << true;
        QTest::newRow("umlaut, wildcard") << "*ÄR.txt"_q
                                          << "bär.txt"_q << true;
        QTest::newRow("not contained") << "plane"_q
                                       << "plan.txt"_q << false;
        QTest::newRow("star at the end is the whole name") << "lan*"_q
                                                           << "plan.txt"_q << false;
        QTest::newRow("extension") << "*.txt"_q
                                   << "plan.txt"_q << true;
        QTest::newRow("not at the end") << "*.txt"_q
                                        << "plan.txt.bak"_q << false;
        QTest::newRow("one character") << "plan?.txt"_q
                                       << "plan1.txt"_q << true;
        QTest::newRow("no character") << "plan?.txt"_q
                                      << "plan.txt"_q << false;
        QTest::newRow("pair is one character") << "a?b"_q
                                               << "a😀b"_q << true;
        QTest::newRow("pair isn't two characters") << "a??b"_q
                                                   << "a😀b"_q << false;
        QTest::newRow("star takes nothing") << "a*b"_q
                                            << "ab"_q << true;
        QTest::newRow("star goes back") << "*ab*b"_q
                                        << "aabab"_q << true;
        QTest::newRow("stars alone") << "**"_q
                                     << ""_q << true;
        QTest::newRow("question mark at the end") << "ab?"_q
                                                  << "ab"_q << false;
        QTest::newRow("brackets are text") << "[a]"_q
                                           << "x[a].txt"_q << true;
        QTest::newRow("brackets are text, wildcard") << "*[a]*"_q
                                                     << "a.txt"_q << false;
        QTest::newRow("backslash is text") << R"(a\*)"_q
                                           << "a*"_q << false;
        QTest::newRow("blanks count") << "a b"_q
                                      << "ab"_q << false;
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
        const QString stars = "*a"_q.repeated(500);
        QVERIFY(NamePattern(stars).matches(name));
        QVERIFY(!NamePattern(stars + QLatin1Char('b')).matches(name));
    }

    void namesAndFolders_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << "/a/b.txt"_q
                               << "/a"_q
                               << "b.txt"_q;
        QTest::newRow("root") << "/b.txt"_q
                              << "/"_q
                              << "b.txt"_q;
        QTest::newRow("name alone") << "b.txt"_q
                                    << ""_q
                                    << "b.txt"_q;
        QTest::newRow("empty") << ""_q
                               << ""_q
                               << ""_q;
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
        QTest::newRow("none") << ""_q << QStringList();
        QTest::newRow("dot") << ".txt"_q << QStringList{".txt"_q};
        QTest::newRow("no dot") << "txt"_q << QStringList{".txt"_q};
        QTest::newRow("star") << "*.txt"_q << QStringList{".txt"_q};
        QTest::newRow("several") << " .a,b;  *.c "_q << QStringList{".a"_q, ".b"_q, ".c"_q};
        QTest::newRow("twice") << "a a"_q << QStringList{".a"_q};
        QTest::newRow("any") << "*.* * ."_q << QStringList();
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
        QCOMPARE(box.currentText(), "All files"_q);
        const auto type = [&box](const QString& text) {
            box.setEditText(text);
            QTest::keyClick(box.lineEdit(), Qt::Key_Return);
        };
        type("documents"_q);
        QCOMPARE(box.types(), (QStringList{".testplan"_q, ".zvsch"_q, ".zvscr"_q}));
        QCOMPARE(box.currentText(), "Documents"_q);
        QCOMPARE(changed.count(), 1);
        type("txt"_q);
        QCOMPARE(box.types(), QStringList{".txt"_q});
        QCOMPARE(box.currentText(), ".txt"_q);
        QCOMPARE(changed.count(), 2);
        type(".txt "_q);
        QCOMPARE(changed.count(), 2);
        type(""_q);
        QCOMPARE(box.currentText(), "All files"_q);
        QCOMPARE(changed.count(), 3);
        box.setTypes({".testplan"_q, ".zvsch"_q, ".zvscr"_q});
        QCOMPARE(box.currentText(), "Documents"_q);
        QCOMPARE(changed.count(), 3);
    }

    void filterFollowsItsList()
    {
        QStringListModel source({"/f/a.txt"_q, "/f/b.txt"_q, "/f/b.txt"_q});
        const RowFilter::Owner filter = RowFilter::make();
        FilteredFilesModel model(nullptr);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        join(*filter, model);
        model.setSource(&source);
        filter->setSource(&source);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), (QStringList{"/f/a.txt"_q, "/f/b.txt"_q}),
                                  longWait);
        QCOMPARE(filter->different(), 2);
        QCOMPARE(filter->lookedAt(), 3);

        source.insertRow(3);
        source.setData(source.index(3), "/f/c.txt"_q);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model).value(2), "/f/c.txt"_q, longWait);
        filter->setPattern("C"_q);
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/c.txt"_q}, longWait);
        source.insertRow(0);
        source.setData(source.index(0), "/c/x.txt"_q);
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QCOMPARE(rowsOf(model), QStringList{"/f/c.txt"_q});
        source.setStringList({"/f/1c"_q, "/c/2"_q});
        QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), QStringList{"/f/1c"_q}, longWait);
        source.removeRow(0);
        QTRY_VERIFY_WITH_TIMEOUT(filter->isDone(), longWait);
        QVERIFY(rowsOf(model).isEmpty());
        filter->setSource(nullptr);
        QVERIFY(filter->isDone());
    }

    void filteredFilesShowThemselves()
    {
        QStringListModel source({"/f/g/a.txt"_q});
        FilteredFilesModel model(nullptr);
        model.setSource(&source);
        model.append({0});
        const QModelIndex index = model.index(0);
        QCOMPARE(index.data().toString(), "a.txt"_q);
        QCOMPARE(index.data(Qt::ToolTipRole).toString(), "/f/g/a.txt"_q);
        QCOMPARE(index.data(FilteredFilesModel::FolderRole).toString(), "/f/g"_q);
        QCOMPARE(index.data(FilteredFilesModel::PathRole).toString(), "/f/g/a.txt"_q);
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
                        source.setData(source.index(row), "/f/%1.txt"_q.arg(row));
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
            rows.append("/f/%1.txt"_q.arg(i));
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
