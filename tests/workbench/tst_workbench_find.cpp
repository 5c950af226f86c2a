// The dialog that finds a text in files, and what it is made of.

#include "FindTest.h"

#include "search/FindInFilesDialog.h"
#include "search/HitsModel.h"
#include "search/SearchRequest.h"
#include "search/TextSearch.h"

#include "support/Background.h"
#include "support/BuiltInStyles.h"
#include "support/FileTree.h"
#include "support/Process.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QBuffer>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTreeView>

#include <cstdlib>
#include <random>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include "support/ExclusiveFile.h"
#include "support/FolderLink.h"
#endif

using zvtest::Finder;
using zvtest::longWait;
using zvtest::write;
using namespace workbench;

namespace {

QVector<FoundLine> search(const QByteArray& content, const QString& text,
                          Qt::CaseSensitivity caseSensitivity = Qt::CaseInsensitive)
{
    QVector<FoundLine> lines;
    QByteArray bytes(content);
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    TextSearch(text, caseSensitivity)
        .run(
            file, [&](const FoundLine& line) { lines.append(line); }, [] { return true; });
    return lines;
}

QVector<int> numbers(const QVector<FoundLine>& lines)
{
    QVector<int> result;
    for (const FoundLine& line : lines)
        result.append(line.number);
    return result;
}

/// How much of the text of a hit is in a colour, which is what marks the text that was found.
int coloured(QTreeView& view, int row)
{
    constexpr int leastSaturation = 30;
    const QModelIndex index = view.model()->index(row, HitsModel::TextColumn);
    const QImage image = view.viewport()->grab(view.visualRect(index)).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).saturation() > leastSaturation ? 1 : 0;
    }
    return count;
}

/// A device that never ends.
class Endless : public QIODevice
{
public:
    explicit Endless(char unit)
        : m_unit(unit)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 given = 0;

protected:
    qint64 readData(char* data, qint64 size) override
    {
        std::fill(data, data + size, m_unit);
        given += size;
        return size;
    }

    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    char m_unit;
};

/// Whether a search for "needle" tells of just these files and folders that can't be read, and finds it in these files.
bool isTold(const zvtest::FileTree& tree, const QStringList& unreadable, const QStringList& files)
{
    SearchQuery order;
    order.text = "needle";
    order.folders = QStringList{tree.path()};
    SearchRequest request(order);
    QStringList told;
    QStringList found;
    SearchProgress last;
    QObject::connect(&request, &SearchRequest::unreadable,
                     [&](const QStringList& paths) { told += paths; });
    QObject::connect(&request, &SearchRequest::found, [&](const QVector<SearchHit>& hits) {
        for (const SearchHit& hit : hits)
            found.append(hit.file);
    });
    QObject::connect(&request, &SearchRequest::progress,
                     [&](const SearchProgress& progress) { last = progress; });
    request.start();
    const auto native = [](QStringList paths) {
        for (QString& path : paths)
            path = QDir::toNativeSeparators(path);
        return paths;
    };
    return told == native(unreadable) && found == native(files)
        && last.unreadable == unreadable.size()
        && request.status() == zvutil::libzvutil::request_completed;
}

} // namespace

class tst_workbench_find : public zvtest::FindTest
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QVector<int>>("found");
        QTest::newRow("empty file") << QByteArray() << "a" << QVector<int>();
        QTest::newRow("first and last") << QByteArray("a\nb\na") << "a" << QVector<int>{1, 3};
        QTest::newRow("a line counts once") << QByteArray("a a a\na") << "a" << QVector<int>{1, 2};
        QTest::newRow("other case") << QByteArray("ABC\n") << "abc" << QVector<int>{1};
        QTest::newRow("umlaut") << QByteArray("x\nBÄR") << "är" << QVector<int>{2};
        QTest::newRow("beyond 16 bits") << QByteArray("x\n\n😀") << "😀" << QVector<int>{3};
        QTest::newRow("carriage returns") << QByteArray("a\r\nb\r\n") << "b" << QVector<int>{2};
        QTest::newRow("no match over lines") << QByteArray("a\nb") << "ab" << QVector<int>();
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                       "a")
                                         << "a" << QVector<int>{1};
        QTest::newRow("bytes that are no text")
            << QByteArray("\xFF\xC3\na\x80") << "a" << QVector<int>{2};
        QTest::newRow("many lines") << QByteArray("x\n").repeated(300'000) + "a"
                                    << "a" << QVector<int>{300'001};
        QTest::newRow("long line")
            << QByteArray(3'000'000, 'x') + "abc" + QByteArray(3'000'000, 'x') + "\nabc"
            << "abc" << QVector<int>{1, 2};
        QTest::newRow("long line of several bytes") << QByteArray("ä").repeated(2'000'000) + "öü\nü"
                                                    << "öü" << QVector<int>{1};
        QTest::newRow("long line, twice")
            << QByteArray("abc").repeated(1'000'000) << "abc" << QVector<int>{1};
    }

    void lines()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        const QVector<FoundLine> found = search(content, text);
        QTEST(numbers(found), "found");
        for (const FoundLine& line : found) {
            QCOMPARE(line.text.mid(line.position, text.size()).toLower(), text.toLower());
            QVERIFY(line.text.size() <= 300);
            QVERIFY(!line.text.endsWith(QLatin1Char('\r')));
        }
    }

    void caseCountsIfWanted()
    {
        QCOMPARE(numbers(search("abc\nABC", "ABC", Qt::CaseSensitive)), QVector<int>{2});
        QCOMPARE(search("\t  abc  ", "abc").value(0).text, QString("abc  "));
        QCOMPARE(search("\t  abc  ", "abc").value(0).position, 0);
    }

    void piecesMakeNoDifference()
    {
        std::mt19937 random(20261121);
        for (int round = 0; round < 10; ++round) {
            // Few different characters, so that the text nearly begins everywhere, and long lines.
            QByteArray content;
            const unsigned lineLength = round % 2 == 0 ? 2'000'000 : 50'000;
            while (content.size() < 3'000'000) {
                const unsigned next = unsigned(random());
                content += next % lineLength == 0 ? "\n" : (next >> 8U) % 2 == 0 ? "a" : "ä";
            }
            QString text;
            for (int i = 0; i < 17; ++i)
                text += random() % 2 == 0 ? QString("a") : QString("ä");
            QVector<int> expected;
            int number = 0;
            for (const QByteArray& line : content.split('\n')) {
                ++number;
                if (QString::fromUtf8(line).contains(text))
                    expected.append(number);
            }
            QVERIFY(round % 2 == 0 || !expected.isEmpty());
            QCOMPARE(numbers(search(content, text, Qt::CaseSensitive)), expected);
        }
    }

    void textIsFoundWhereALongLineIsCut_data()
    {
        QTest::addColumn<QByteArray>("filler");
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("two bytes") << QByteArray("ä");
        QTest::newRow("three bytes") << QByteArray("€");
        QTest::newRow("four bytes") << QByteArray("😀");
    }

    void textIsFoundWhereALongLineIsCut()
    {
        QFETCH(QByteArray, filler);
        const QString text = "aöü€😀b";
        // A line is cut where a piece ends that was read.
        constexpr int piece = 128 * 1024;
        const QByteArray line = filler.repeated(12 * piece / filler.size());
        for (int pieces = 8; pieces <= 10; ++pieces) {
            for (int shift = -16; shift <= 2; shift += 2) {
                const int place = (pieces * piece + shift) / filler.size() * filler.size();
                QByteArray content(line);
                content.insert(place, text.toUtf8());
                const QVector<FoundLine> found = search(content, text, Qt::CaseSensitive);
                QCOMPARE(numbers(found), QVector<int>{1});
                QCOMPARE(found[0].text.mid(found[0].position, text.size()), text);
            }
        }
    }

    void searchEndsWithinAFileThatNeverEnds_data()
    {
        QTest::addColumn<char>("unit");
        QTest::newRow("one line") << 'x';
        QTest::newRow("empty lines") << '\n';
        QTest::newRow("half characters") << '\x80';
    }

    void searchEndsWithinAFileThatNeverEnds()
    {
        QFETCH(char, unit);
        Endless file(unit);
        int asked = 0;
        int found = 0;
        TextSearch("needle", Qt::CaseInsensitive)
            .run(
                file, [&found](const FoundLine&) { ++found; }, [&asked] { return ++asked <= 50; });
        QCOMPARE(found, 0);
        QCOMPARE(asked, 51);
        QVERIFY(file.given <= 50 * 200'000);
    }

    void foldersAreChosen()
    {
        zvtest::FileTree tree;
        write(tree.path("a/a.txt"), "needle");
        write(tree.path("a/in/b.txt"), "needle");
        write(tree.path("c/c.txt"), "needle");
        Finder finder({tree.path("a/in"), tree.path("a"), tree.path("c")});
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.hits(), (QStringList{"a.txt:1", "b.txt:1", "c.txt:1"}));
        finder.folders()->item(1)->setCheckState(Qt::Unchecked);
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.hits(), (QStringList{"b.txt:1", "c.txt:1"}));
        for (int i = 0; i < 3; ++i)
            finder.folders()->item(i)->setCheckState(Qt::Unchecked);
        QVERIFY(!finder.button("find")->isEnabled());

        const zvtest::WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            dialog.setDirectory(tree.path("c"));
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(tree.path());
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
        });
        finder.button("browse")->click();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QTRY_COMPARE_WITH_TIMEOUT(finder.folders()->count(), 4, longWait);
        finder.dialog->setFolders({});
        QCOMPARE(finder.folders()->count(), 1);
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.hits().size(), 3);
        finder.dialog->setFolders({tree.path("c")});
        QCOMPARE(finder.folders()->count(), 2);
    }

    void linksAreNoTrap()
    {
        zvtest::FileTree tree;
        write(tree.path("a/a.txt"), "needle");
#if defined(Q_OS_WIN)
        const zvtest::FolderLink round(QDir(tree.path("a")).absolutePath(), "round", "..");
        if (!round.isMade())
            QSKIP("No junction can be made here");
        const QStringList expected = {"a.txt:1"};
#else
        tree.link("a/round", "..");
        tree.link("a/nowhere", "gone");
        tree.link("a/z.txt", "a.txt");
        const QStringList expected = {"a.txt:1", "z.txt:1"};
#endif
        Finder finder({tree.path()});
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.hits(), expected);
    }

    void hitsAreLimited()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), QByteArray("needle\n").repeated(SearchRequest::maxHits));
        Finder finder({tree.path()});
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.view()->model()->rowCount(), SearchRequest::maxHits);
        QCOMPARE(finder.status(), QString("10,000 lines in 1 of 1 file."));
        write(tree.path("b.txt"), "needle");
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.view()->model()->rowCount(), SearchRequest::maxHits);
        QCOMPARE(finder.status(),
                 QString("Only the first 10,000 lines are shown. Narrow the search to see all."));
    }

    void whatIsMissingIsListed()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), "needle");
        Finder finder({tree.path(), tree.path("gone")});
        QVERIFY(finder.finds("needle"));
        QCOMPARE(finder.hits(), QStringList{"a.txt:1"});
        QPushButton* const button = finder.button("unreadable");
        QVERIFY(button->isVisible());
        QCOMPARE(button->text(), QString("1 unreadable…"));
        QStringList listed;
        const zvtest::WindowResponder<QDialog> answer([&listed](QDialog& dialog) {
            const auto* const list = dialog.findChild<QListWidget*>();
            for (int row = 0; list && row < list->count(); ++row)
                listed.append(list->item(row)->text());
            dialog.reject();
        });
        button->click();
        QTRY_COMPARE_WITH_TIMEOUT(answer.count, 1, longWait);
        QCOMPARE(listed, QStringList{QDir::toNativeSeparators(tree.path("gone"))});
        finder.folders()->item(1)->setCheckState(Qt::Unchecked);
        QVERIFY(finder.finds("needle"));
        QVERIFY(!button->isVisible());
    }

    void whatMayNotBeReadIsTold()
    {
        zvtest::FileTree tree;
        write(tree.path("a/a.txt"), "needle");
        write(tree.path("b/b.txt"), "needle");
        write(tree.path("c.txt"), "needle");
#if defined(Q_OS_UNIX)
        QVERIFY(QFile::setPermissions(tree.path(), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(tree.path("a"), QFile::Permissions(0x7700)));
        QVERIFY(QFile::setPermissions(tree.path("b/b.txt"), QFile::Permissions()));
        QVERIFY(zvtest::holdsForOrdinaryUser([&tree] {
            QFile::setPermissions(tree.path("a"), QFile::Permissions());
            return isTold(tree, {tree.path("a"), tree.path("b/b.txt")}, {tree.path("c.txt")});
        }));
        QVERIFY(QFile::setPermissions(tree.path("a"), QFile::Permissions(0x7700)));
#else
        const zvtest::ExclusiveFile held(tree.path("b/b.txt"));
        QVERIFY(held.isOpen());
        QVERIFY(isTold(tree, {tree.path("b/b.txt")}, {tree.path("c.txt"), tree.path("a/a.txt")}));
#endif
    }

    void hitsAreOpened()
    {
        zvtest::FileTree tree;
        write(tree.path("a.txt"), "x\nneedle\nneedle");
        Finder finder({tree.path()});
        QVERIFY(finder.finds("needle"));
        QSignalSpy open(finder.dialog.get(), &FindInFilesDialog::openRequested);
        const QString file = QDir::toNativeSeparators(tree.path("a.txt"));
        QTreeView& view = *finder.view();
        const QPoint first = view.visualRect(view.model()->index(0, 0)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, first);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, first);
        QCOMPARE(open.takeFirst(), (QVariantList{file, 2, QString("needle")}));
        QVERIFY(open.isEmpty());
        QVERIFY(zvtest::activate(*finder.dialog));
        view.setFocus();
        view.setCurrentIndex(view.model()->index(1, 0));
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(open.takeFirst(), (QVariantList{file, 3, QString("needle")}));
        QVERIFY(open.isEmpty());
        QVERIFY(!finder.dialog->isSearching());
    }

    void hitIsShownHoweverNarrowTheColumn()
    {
        zvtest::showStyle(QString("Light"));
        zvtest::FileTree tree;
        write(tree.path("a.txt"), "needle\n" + QByteArray(300, '.') + "needle at the end\n");
        Finder finder({tree.path()});
        finder.view()->setColumnWidth(HitsModel::FileColumn, 300);
        finder.dialog->resize(520, 400);
        QVERIFY(finder.finds("needle"));
        const int atTheStart = coloured(*finder.view(), 0);
        const int atTheEnd = coloured(*finder.view(), 1);
        QVERIFY2(atTheStart > 100, qPrintable(QString::number(atTheStart)));
        QVERIFY2(std::abs(atTheEnd - atTheStart) <= atTheStart / 5,
                 qPrintable(QString::number(atTheEnd)));
        qApp->setStyleSheet(QString());
    }

    void pictures_data()
    {
        zvtest::addStyleRows();
    }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showStyle(style);
        zvtest::FileTree tree;
        for (int i = 1; i < 9; ++i)
            write(tree.path(QString("plans/bridge %1.testplan").arg(i)),
                  "<step>\n\tMeasure the voltage at TP1</step>\n   wait\n   the Voltage is 5 V");
        Finder finder({tree.path("plans"), tree.path("gone")});
        QVERIFY(finder.finds("voltage"));
        QCOMPARE(finder.hits().size(), 16);
        finder.view()->setCurrentIndex(finder.view()->model()->index(2, 0));
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(finder.dialog->grab().save(QString(PICTURES "/find-%1.png").arg(style)));
        qApp->setStyleSheet(QString());
    }

    void foldersComeInTheOrderOfTheirNames()
    {
        zvtest::FileTree tree;
        const QStringList places = {"a", "a/a", "a/a/b", "a/b", "b", "b/a", "c", "x/a", "x/b"};
        for (const QString& place : places)
            write(tree.path(place + "/1.txt"), "needle");
        Finder finder({tree.path("c"), tree.path("a"), tree.path("b"), tree.path("x")});
        QVERIFY(finder.finds("needle"));
        const auto* const model = qobject_cast<HitsModel*>(finder.view()->model());
        QStringList found;
        for (int row = 0; row < model->rowCount(); ++row) {
            const QString file = QDir::fromNativeSeparators(model->hit(row).file);
            found.append(QDir(tree.path()).relativeFilePath(QFileInfo(file).path()));
        }
        QCOMPARE(found, (QStringList{"c", "a", "a/a", "a/a/b", "a/b", "b", "b/a", "x/a", "x/b"}));
    }

    void pipesAreNoTrap()
    {
#if defined(Q_OS_UNIX)
        zvtest::FileTree tree;
        write(tree.path("a/a.txt"), "needle");
        const QByteArray pipe = QFile::encodeName(tree.path("a/pipe.txt"));
        QCOMPARE(::mkfifo(pipe.constData(), S_IRUSR | S_IWUSR), 0);
        tree.link("a/link to pipe.txt", "pipe.txt");
        tree.link("a/z.txt", "a.txt");
        Finder finder({tree.path()});
        const bool isFound = finder.finds("needle");
        // Who waits for the pipe goes on.
        const int writer = ::open(pipe.constData(), O_WRONLY | O_NONBLOCK);
        if (writer >= 0)
            ::close(writer);
        QVERIFY(isFound);
        QCOMPARE(finder.hits(), (QStringList{"a.txt:1", "z.txt:1"}));
        QCOMPARE(finder.status(), QString("2 lines in 2 of 2 files."));
#else
        QSKIP("there are no pipes in folders");
#endif
    }

    void toolTipsShowLinesAsTheyAre()
    {
        const QStringList lines = {"needle if (i<b && c>d)", "<b>needle</b> &amp; more",
                                   "  needle < 5 && 6 > 7"};
        HitsModel model(nullptr);
        for (const QString& line : lines)
            model.append({{"/a/<i>b</i>.txt", {1, line, 0}}});
        const auto shown = [&model](int row, int column) {
            const QString tip = model.index(row, column).data(Qt::ToolTipRole).toString();
            return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText()
                                            : tip;
        };
        for (int row = 0; row < lines.size(); ++row) {
            QCOMPARE(shown(row, HitsModel::TextColumn).trimmed(), lines[row].trimmed());
            QCOMPARE(shown(row, HitsModel::FileColumn), QString("/a/<i>b</i>.txt"));
        }
    }
};

QTEST_MAIN(tst_workbench_find)

#include "tst_workbench_find.moc"
