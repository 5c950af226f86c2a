// What a scan makes of links, of names that are no text and of what it may not read.

#include "Scan.h"

#include "support/FileTree.h"
#include "support/Process.h"
#include "support/WalkOracle.h"

#include <zv_logging/host.h>

#include <QTest>

#include <algorithm>
#include <string>
#include <utility>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using zvtest::FileTree;
using zvtest::Lines;
using zvtest::Log;
using zvtest::runLines;
using zvtest::Scan;

namespace {

#if defined(Q_OS_UNIX)
bool isScanError(const std::string& line)
{
    return line.rfind("write 1 FileView: File scan error: ", 0) == 0;
}
#endif

} // namespace

class tst_ZvMultiDirectoryListModelProcess_entries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
#if defined(Q_OS_UNIX)
    void linksToFilesAreListedAndThoseToDirectoriesNotFollowed()
    {
        const FileTree tree({"files/a.txt", "files/b.txt", "one/", "two/", "three/"});
        tree.link("one/link.txt", tree.path("files/a.txt"));
        tree.link("two/link", tree.path("files"));
        tree.link("three/dangling", "/no/such/file");
        tree.link("three/below a file", tree.path("files/a.txt/x"));
        Log log;
        Scan scan;
        scan.add(tree.path("one"));
        QCOMPARE(scan.rows, QStringList{tree.path("one/link.txt")});
        scan.add(tree.path("two"));
        scan.add(tree.path("three"));
        QCOMPARE(scan.rows, QStringList{tree.path("one/link.txt")});
        QVERIFY(std::none_of(log.lines.begin(), log.lines.end(), &isScanError));
        // The same with a link as the listed directory.
        tree.link("link", tree.path("files"));
        Scan other;
        other.add(tree.path("link"));
        QCOMPARE(other.rows, zvtest::expectedRows({tree.path("link")}));
        QCOMPARE(other.rows.size(), 2);
    }

    void linkAtTheEndOfAWalk()
    {
        // The path is cut back to a directory, and so is what the link is.
        const FileTree tree({"a.txt", "d/e/"});
        tree.remove("a.txt");
        tree.link("d/e/link", "/proc/self/status");
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows, QStringList{tree.path("d/e/link")});
    }

    void loopsOfLinksEnd()
    {
        const FileTree tree({"d/a.txt"});
        tree.link("d/up", "..");
        tree.link("d/self", "self");
        tree.link("d/one", "two");
        tree.link("d/two", "one");
        Log log;
        Scan scan;
        scan.add(tree.path());
        QVERIFY(scan.rows.contains(tree.path("d/a.txt")));
        const auto errors = std::count_if(log.lines.begin(), log.lines.end(), &isScanError);
        // None of the three is the first entry of the listed directory, which has but one.
        QCOMPARE(errors, 3);
        const auto error = std::find_if(log.lines.begin(), log.lines.end(), &isScanError);
        QVERIFY2(error->find("directory_entry::status") != std::string::npos, error->c_str());
        QVERIFY2(error->find(tree.path("d/").toStdString()) != std::string::npos, error->c_str());
        QCOMPARE(scan.signalOrder, QString("(b)"));
    }

    void otherKindsOfFilesAreNotListed()
    {
        const FileTree tree({"d/a.txt"});
        QCOMPARE(mkfifo(QFile::encodeName(tree.path("d/fifo")).constData(), 0600), 0);
        tree.link("d/null", "/dev/null");
        Scan scan;
        scan.add(tree.path());
        QVERIFY(!scan.rows.contains(tree.path("d/fifo")));
        QVERIFY(!scan.rows.contains(tree.path("d/null")));
        QVERIFY(scan.rows.contains(tree.path("d/a.txt")));
        // A listed one isn't opened either, which would wait for a writer.
        scan.add(tree.path("d/fifo"));
        QCOMPARE(scan.signalOrder.right(1), QString(")"));
    }

    void namesThatAreNoTextAreListed_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("shown");
        const QString bad(QChar::ReplacementCharacter);
        QTest::newRow("one byte") << QByteArray("\xFF") << bad;
        QTest::newRow("inside") << QByteArray("a\x80z.txt") << "a" + bad + "z.txt";
        QTest::newRow("cut off") << QByteArray("ab\xC3") << "ab" + bad;
        QTest::newRow("beside a character") << QByteArray("\xC3\xA4\xE4") << "ä" + bad;
        QTest::newRow("byte order mark")
            << QByteArray("\xEF\xBB\xBFx") << QStringLiteral("\uFEFFx");
        QTest::newRow("byte order mark in front of a bad byte")
            << QByteArray("\xEF\xBB\xBF\xFF") << QStringLiteral("\uFEFF") + bad;
    }

    void namesThatAreNoTextAreListed()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, shown);
        const FileTree tree({"d/a.txt"});
        // As a directory and as a file.
        const QByteArray folder = QFile::encodeName(tree.path()) + "/d/" + name;
        QCOMPARE(mkdir(folder.constData(), 0700), 0);
        for (const QByteArray& file : {name, QByteArray("b.txt"), QByteArray("c.txt")}) {
            const int descriptor =
                open((folder + '/' + file).constData(), O_CREAT | O_WRONLY, 0600);
            QVERIFY(descriptor >= 0);
            close(descriptor);
        }
        Log log;
        Scan scan;
        scan.add(tree.path());
        const QString prefix = tree.path("d/") + shown + QLatin1Char('/');
        for (const QString& file : {shown, QString("b.txt"), QString("c.txt")})
            QVERIFY2(scan.rows.contains(prefix + file),
                     qPrintable(scan.rows.join(QLatin1Char('\n'))));
        QVERIFY(scan.rows.contains(tree.path("d/a.txt")));
        QCOMPARE(log.take(), runLines());
        scan.process.setFilterFixedString(shown);
        QVERIFY(scan.rows.contains(prefix + shown));
    }

    void directoriesThatCanNotBeReadEndTheWalk()
    {
        const FileTree tree({"first/a.txt", "first/b.txt", "locked/", "mixed/c.txt",
                             "mixed/locked/d.txt", "mixed/e.txt", "last/f.txt"});
        const auto mode = [&tree](const char* name, mode_t bits) {
            return chmod(QFile::encodeName(tree.path(QLatin1String(name))).constData(), bits) == 0;
        };
        QVERIFY(mode(".", 0755) && mode("first", 0755) && mode("mixed", 0755)
                && mode("last", 0755));
        QVERIFY(mode("locked", 0) && mode("mixed/locked", 0));
        QVERIFY(zvtest::holdsForOrdinaryUser([&tree] {
            const auto path = [&tree](const char* name) { return tree.path(QLatin1String(name)); };
            // As a listed directory it is passed over without a word.
            Log log;
            Scan scan;
            scan.add(path("locked"));
            scan.add(path("first"));
            if (scan.rows != zvtest::expectedRows({path("first")}) || log.take().size() != 10)
                return false;
            // Met on the way it ends the walk, and what was found is sent.
            scan.add(path("mixed"));
            scan.add(path("last"));
            Lines lines = log.take();
            const auto errors = std::count_if(lines.begin(), lines.end(), &isScanError);
            const auto error = std::find_if(lines.begin(), lines.end(), &isScanError);
            if (errors != 2
                || error->find("recursive_directory_iterator::operator++") == std::string::npos)
                return false;
            // A later run goes no further.
            scan.process.startScan();
            return !scan.rows.contains(path("last/f.txt")) && scan.rows.size() >= 2
                && scan.rows.size() <= 4 && scan.signalOrder.endsWith("(b)")
                && log.take() == runLines();
        }));
        QVERIFY(mode("locked", 0700) && mode("mixed/locked", 0700));
    }

    void linksThatMayNotBeFollowedAreTold()
    {
        const FileTree tree({"d/a.txt", "locked/b.txt"});
        tree.link("d/link", tree.path("locked/b.txt"));
        const auto mode = [&tree](const char* name, mode_t bits) {
            return chmod(QFile::encodeName(tree.path(QLatin1String(name))).constData(), bits) == 0;
        };
        QVERIFY(mode(".", 0755) && mode("d", 0755) && mode("locked", 0));
        QVERIFY(zvtest::holdsForOrdinaryUser([&tree] {
            const QString parent = tree.path("d");
            Log log;
            Scan scan;
            scan.add(parent);
            // Where the link is the first entry, nobody looks at it.
            const auto errors = std::count_if(log.lines.begin(), log.lines.end(), &isScanError);
            return errors <= 2 && !scan.rows.contains(tree.path("d/link"))
                && scan.signalOrder.endsWith(QLatin1Char(')'));
        }));
        QVERIFY(mode("locked", 0700));
    }

    void whatVanishesDuringTheWalk()
    {
        // The log of the first loop of links is the moment at which the rest goes.
        const FileTree tree;
        for (int i = 0; i < 20; ++i) {
            const QString name = QString("d%1").arg(i);
            tree.file(name + "/a.txt");
            tree.link(name + "/self", "self");
        }
        tree.file(QString("other/b.txt"));
        Scan scan;
        int errors = 0;
        bool removed = false;
        Lines lines;
        Log log([&](const std::string& line) {
            if (!isScanError(line))
                return;
            ++errors;
            lines.push_back(line);
            if (!std::exchange(removed, true)) {
                for (int i = 0; i < 20; ++i)
                    tree.remove(QString("d%1").arg(i));
            }
        });
        scan.add(tree.path());
        // The second error is that of the directory that isn't there any more.
        QCOMPARE(errors, 2);
        QVERIFY2(lines[1].find("recursive_directory_iterator::operator++") != std::string::npos,
                 lines[1].c_str());
        QVERIFY(scan.signalOrder.endsWith(QLatin1Char(')')));
        // All was read before the end of the walk, and nothing is walked any more.
        const QStringList rows = scan.rows;
        scan.process.startScan();
        QCOMPARE(scan.rows, rows);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows,
                 QStringList{tree.path("other/b.txt")} + QStringList{tree.path("other")});
    }

    void stoppedWalkGoesOnWhereItWas()
    {
        const FileTree tree;
        tree.files(50, "d/%1.txt");
        tree.link("d/self", "self");
        Scan scan;
        {
            const Log log([&scan](const std::string& line) {
                if (isScanError(line))
                    scan.process.requestStop();
            });
            scan.add(tree.path());
        }
        QCOMPARE(scan.rows, QStringList());
        // It doesn't begin anew: it doesn't meet the link again, unless that was the last entry.
        Log log;
        scan.process.setFilterFixedString("1");
        tree.remove("d/self");
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, {}, "1"));
        scan.process.setFilterFixedString(".TX");
        QStringList expected = zvtest::expectedRows({tree.path()}, {}, ".tx");
        QCOMPARE(scan.rows, expected);
        QVERIFY(std::none_of(log.lines.begin(), log.lines.end(), &isScanError));
    }

    void longNamesAndPaths()
    {
        // 255 bytes are the most, in characters of one and of three bytes; as a path it is longer
        // than the system takes at once.
        const FileTree tree;
        const QByteArray name = QByteArray("\xE2\x82\xAC").repeated(85);
        QCOMPARE(name.size(), 255);
        const int levels = 40;
        int folder = open(QFile::encodeName(tree.path()).constData(), O_DIRECTORY | O_RDONLY);
        for (int i = 0; i < levels; ++i) {
            QCOMPARE(mkdirat(folder, name.constData(), 0700), 0);
            const int inner = openat(folder, name.constData(), O_DIRECTORY | O_RDONLY);
            QVERIFY(inner >= 0);
            close(folder);
            folder = inner;
        }
        close(openat(folder, "a.txt", O_CREAT | O_WRONLY, 0600));
        QCOMPARE(symlinkat("a.txt", folder, "link"), 0);
        close(folder);
        Log log;
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(log.take(), runLines());
        const QString text = QString::fromUtf8(name);
        const QString deepest = tree.path() + (QLatin1Char('/') + text).repeated(levels);
        QStringList rows{deepest + "/a.txt", deepest + "/link"};
        std::sort(rows.begin(), rows.end());
        QStringList files = scan.rows;
        std::sort(files.begin(), files.end());
        // What the path is cut back to is listed if the file came last.
        files.removeAll(tree.path(text));
        QCOMPARE(files, rows);
        removeDeep(tree.path(), name, levels);
    }

    void treeIsDeeperThanThereAreDescriptors()
    {
        constexpr int levels = 3'000;
        const FileTree tree;
        int folder = open(QFile::encodeName(tree.path()).constData(), O_DIRECTORY | O_RDONLY);
        for (int i = 0; i < levels; ++i) {
            // Before and behind the way down, as the file system likes.
            for (const char* file : {"a", "z"})
                close(openat(folder, file, O_CREAT | O_WRONLY, 0600));
            QCOMPARE(mkdirat(folder, "m", 0700), 0);
            const int inner = openat(folder, "m", O_DIRECTORY | O_RDONLY);
            QVERIFY(inner >= 0);
            close(folder);
            folder = inner;
        }
        close(folder);
        Log log;
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(log.take(), runLines());
        // In the listed directory the first one isn't seen or the last one seen twice.
        QVERIFY2(scan.rows.size() >= 2 * levels - 1 && scan.rows.size() <= 2 * levels + 1,
                 qPrintable(QString::number(scan.rows.size())));
        scan.process.setFilterFixedString("Z");
        QVERIFY2(scan.rows.size() >= levels - 1 && scan.rows.size() <= levels + 1,
                 qPrintable(QString::number(scan.rows.size())));
        const QString deepest = tree.path() + QString("/m").repeated(levels - 1);
        QVERIFY(scan.rows.contains(deepest + "/z"));
        removeDeep(tree.path(), "m", levels);
    }
#endif

private:
#if defined(Q_OS_UNIX)
    /// What is too deep for the ordinary functions.
    static void removeDeep(const QString& path, const QByteArray& name, int levels)
    {
        int folder = open(QFile::encodeName(path).constData(), O_DIRECTORY | O_RDONLY);
        for (int i = 0; i < levels; ++i) {
            const int inner = openat(folder, name.constData(), O_DIRECTORY | O_RDONLY);
            close(folder);
            folder = inner;
        }
        for (int i = 0; i < levels; ++i) {
            for (const char* file : {"a", "z", "a.txt", "link"})
                unlinkat(folder, file, 0);
            const int outer = openat(folder, "..", O_DIRECTORY | O_RDONLY);
            close(folder);
            unlinkat(outer, name.constData(), AT_REMOVEDIR);
            folder = outer;
        }
        close(folder);
    }
#endif
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModelProcess_entries)
#include "tst_ZvMultiDirectoryListModelProcess_entries.moc"
