#include "Scan.h"

#include "support/FileTree.h"
#include "support/Process.h"
#include "support/WalkOracle.h"

#include "impl/models/ZvMultiDirectoryListModelProcess.h"

#include <zvutil/ZvFilePath.h>

#include <zv_logging/host.h>

#include <QMetaMethod>
#include <QTest>

#include <limits>
#include <stdexcept>
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
using zvtest::named;
using zvtest::runLines;
using zvtest::Scan;

class tst_ZvMultiDirectoryListModelProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject()
    {
        const QMetaObject& meta = ZvMultiDirectoryListModelProcess::staticMetaObject;
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        QByteArrayList methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
            methods.append(meta.method(i).methodSignature());
        }
        QCOMPARE(methods, (QByteArrayList{"nextBatch(QVariantList)", "started()", "stopped()"}));
        QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QByteArrayList{"batch"});
    }

    void listsWhatTheWalkSees_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("place");
        const std::pair<const char*, QStringList> shapes[] = {
            {"nothing", {}},
            {"one file", {"a.txt"}},
            {"two files", named("ab")},
            {"many files", named("abcdefghijklmnopqrstuvwxyz")},
            {"an empty directory", {"d/"}},
            {"empty directories in another", {"d/e/", "d/f/", "d/g/h/"}},
            {"one file in one directory", {"d/a.txt"}},
            {"one file three levels down", {"d/e/f/a.txt"}},
            {"files in one directory", {"d/a.txt", "d/b.txt", "d/c.txt"}},
            {"a file and an empty directory", {"a.txt", "d/"}},
            {"a file and a directory with files", {"a.txt", "d/b.txt", "d/c.txt"}},
            {"files on all levels",
             {"a.txt", "b.txt", "d/c.txt", "d/d.txt", "d/e/f.txt", "d/e/g.txt", "d/e/h/i.txt",
              "d/e/h/j.txt"}},
            {"directories side by side",
             {"d/a.txt", "d/b.txt", "e/c.txt", "e/d.txt", "f/e.txt", "f/f.txt"}},
            {"directories with the names of files",
             {"d.txt/a.txt", "d.txt/b.bin", "e.bin/a.txt", "e.bin/f.txt/c.txt"}},
            {"names that aren't ASCII", {"ä/ö.txt", "ä/€.txt", "ü.txt", "日本/語.txt", "𝄞.txt"}},
        };
        // Two file systems, whose orders differ.
        for (const auto& [name, files] : shapes) {
            QTest::newRow(name) << files << zvtest::quickPlace();
            QTest::addRow("%s, on the disk", name) << files << QDir::tempPath();
        }
    }

    void listsWhatTheWalkSees()
    {
        QFETCH(QStringList, files);
        QFETCH(QString, place);
        const FileTree tree(files, place);
        for (const QStringList& types :
             {QStringList(), QStringList{".txt"}, QStringList{".bin", ".TXT"}}) {
            Scan scan;
            scan.process.setAllowedFileTypes(types);
            scan.add(tree.path());
            QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, types));
            scan.process.setFilterFixedString("A");
            QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, types, "A"));
        }
    }

    void firstEntryIsNeverListedAndTheLastOneTwice()
    {
        const FileTree tree(named("ab"));
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 2);
        QCOMPARE(scan.rows[0], scan.rows[1]);
    }

    void singleEntryIsListedOnce()
    {
        const FileTree tree({"a.txt"});
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows, QStringList{QDir::toNativeSeparators(tree.path("a.txt"))});
    }

    void walkThatEndsInSubdirectoriesListsTheOneThatItIsCutBackTo()
    {
        const FileTree tree({"d.txt/e/a.txt"});
        Scan scan;
        scan.add(tree.path());
        const QString directory = QDir::toNativeSeparators(tree.path("d.txt"));
        const QString file = QDir::toNativeSeparators(tree.path("d.txt/e/a.txt"));
        QCOMPARE(scan.rows, (QStringList{file, directory}));
        scan.process.setAllowedFileTypes({".txt"});
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, (QStringList{file, directory}));
        // It has the name of the directory for the filter, too.
        scan.process.setFilterFixedString("D.T");
        QCOMPARE(scan.rows, QStringList{directory});
        scan.process.setAllowedFileTypes({".bin"});
        scan.process.setFilterFixedString({});
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, QStringList());
    }

    void directoriesAreWalkedInTheOrderOfTheirList_data()
    {
        QTest::addColumn<QStringList>("list");
        QTest::newRow("none") << QStringList();
        QTest::newRow("two") << QStringList{"files", "deep"};
        QTest::newRow("two the other way") << QStringList{"deep", "files"};
        QTest::newRow("one twice") << QStringList{"files", "files"};
        QTest::newRow("one in the other") << QStringList{".", "files"};
        QTest::newRow("single entries") << QStringList{"one", "one", "files", "one"};
        QTest::newRow("empty, alone") << QStringList{"empty"};
        QTest::newRow("empty, first: the rest isn't walked") << QStringList{"empty", "files"};
        QTest::newRow("empty, in the middle: the rest isn't walked")
            << QStringList{"files", "empty", "deep"};
        QTest::newRow("empty, last") << QStringList{"files", "empty"};
        QTest::newRow("missing") << QStringList{"missing"};
        QTest::newRow("missing, first: passed over") << QStringList{"missing", "files"};
        QTest::newRow("missing, in the middle: passed over")
            << QStringList{"files", "missing", "missing", "deep"};
        QTest::newRow("missing, last") << QStringList{"files", "missing"};
        QTest::newRow("a file: passed over") << QStringList{"files/a.txt", "deep"};
        QTest::newRow("empty behind missing") << QStringList{"missing", "empty", "files"};
    }

    void directoriesAreWalkedInTheOrderOfTheirList()
    {
        QFETCH(QStringList, list);
        const FileTree tree({"files/a.txt", "files/b.txt", "files/c.txt", "deep/d/e.txt",
                             "deep/f/g.txt", "deep/h.txt", "one/i.txt", "empty/"});
        QStringList paths;
        QList<zvutil::ZvFilePath> directories;
        for (const QString& name : list) {
            paths.append(tree.path(name));
            directories.append(zvutil::ZvFilePath(paths.back().toStdWString()));
        }
        Scan scan;
        Log log;
        scan.process.setDirectories(directories);
        QCOMPARE(scan.rows, zvtest::expectedRows(paths));
        // What can't be opened is passed over without a word.
        QCOMPARE(log.take(), runLines());

        Scan one;
        for (const QString& path : paths)
            one.add(path);
        QCOMPARE(one.rows, scan.rows);
    }

    void emptyDirectoryEndsTheWalkForGood()
    {
        const FileTree tree({"empty/", "files/a.txt"});
        Scan scan;
        scan.add(tree.path("empty"));
        scan.add(tree.path("files"));
        QCOMPARE(scan.rows, QStringList());
        scan.process.startScan();
        QCOMPARE(scan.rows, QStringList());
        tree.file(QString("empty/b.txt"));
        scan.process.startScan();
        QCOMPARE(scan.rows, QStringList());
        scan.process.reloadPaths();
        QCOMPARE(scan.rows.size(), 2);
    }

    void textsThatAreNoDirectoryArePassedOver_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("NUL inside") << QDir::tempPath() + QChar(u'\0') + "x";
        QTest::newRow("NUL at the start") << QString(QChar(u'\0'));
        QTest::newRow("wildcards") << QDir::tempPath() + "/*?";
        QTest::newRow("unpaired surrogates")
            << QString("/x") + QChar(0xD800) + QChar(0xDC00).toLower();
        QTest::newRow("relative") << "no/such/directory";
        QTest::newRow("very long") << QString("/x").repeated(100'000);
        QTest::newRow("a name that is too long")
            << QDir::tempPath() + QLatin1Char('/') + QString(300, QLatin1Char('x'));
        QTest::newRow("a drive that isn't there") << "Q:";
        QTest::newRow("a device that isn't there") << "\\\\?\\no";
        QTest::newRow("a server that isn't there") << "\\\\zvutil-no-server\\share";
        QTest::newRow("a share that isn't there") << "\\\\localhost\\zvutil-no-share\\folder";
        QTest::newRow("the same as a device") << "\\\\?\\UNC\\localhost\\zvutil-no-share";
        QTest::newRow("a server alone") << "\\\\localhost";
        QTest::newRow("a device that holds no files") << "\\\\.\\NUL";
        QTest::newRow("the name of a device") << "NUL";
    }

    void textsThatAreNoDirectoryArePassedOver()
    {
        QFETCH(QString, text);
        const FileTree tree(named("ab"));
        Scan scan;
        Log log;
        scan.add(text);
        QCOMPARE(log.take(), runLines());
        scan.add(tree.path());
        QCOMPARE(log.take(), runLines());
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
        scan.remove(text);
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
    }

    void formsOfADirectory_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QString>("shown");
#if defined(Q_OS_WIN)
        QTest::newRow("as it is") << ""
                                  << "\\";
        QTest::newRow("slash") << "/"
                               << "\\";
        QTest::newRow("backslash") << "\\"
                                   << "\\";
        QTest::newRow("two") << "\\/"
                             << "\\\\";
#else
        QTest::newRow("as it is") << ""
                                  << "/";
        QTest::newRow("slash") << "/"
                               << "/";
        QTest::newRow("backslash") << "\\"
                                   << "/";
        QTest::newRow("two") << "\\/"
                             << "//";
#endif
    }

    void formsOfADirectory()
    {
        QFETCH(QString, suffix);
        QFETCH(QString, shown);
        const FileTree tree({"d/a.txt"});
        Scan scan;
        scan.add(tree.path("d") + suffix);
        QCOMPARE(scan.rows,
                 QStringList{QDir::toNativeSeparators(tree.path("d")) + shown + "a.txt"});
        // All forms are the same directory to a removal.
        scan.remove(QDir::toNativeSeparators(tree.path("d")));
        QCOMPARE(scan.rows, QStringList());
    }

    void removalTakesAllThatAreEqualAndKeepsTheOrder()
    {
        const FileTree tree({"a/a.txt", "b/b.txt", "c/c.txt"});
        const auto path = [&tree](const char* name) { return tree.path(QLatin1String(name)); };
        Scan scan;
        for (const char* name : {"c", "a", "b", "a/", "c", "a\\"})
            scan.add(path(name));
        QCOMPARE(scan.rows.size(), 6);
        scan.remove(path("a"));
        QCOMPARE(scan.rows, zvtest::expectedRows({path("c"), path("b"), path("c")}));
        scan.signalOrder.clear();
        scan.remove(path("A"));
        QCOMPARE(scan.signalOrder, QString("(b)"));
        QCOMPARE(scan.rows, zvtest::expectedRows({path("c"), path("b"), path("c")}));
    }

    void runsOfARun()
    {
        Log log;
        Scan scan;
        scan.process.startScan();
        QCOMPARE(log.take(), runLines());
        QCOMPARE(scan.signalOrder, QString("()"));
        const FileTree tree(named("abc"));
        scan.add(tree.path());
        QCOMPARE(log.take(), runLines());
        QCOMPARE(scan.signalOrder, QString("()(b)"));
    }

    void runDoesNotNest()
    {
        Scan scan;
        bool nested = false;
        const FileTree tree(named("abc"));
        scan.onBatch = [&] {
            if (!std::exchange(nested, true))
                scan.process.startScan();
        };
        Log log;
        scan.add(tree.path());
        Lines lines = runLines();
        lines.insert(lines.begin() + 3, "write 1 FileView: Start invoked, already running: true");
        QCOMPARE(log.take(), lines);
        QCOMPARE(scan.signalOrder, QString("(b)"));
    }

    void signalsComeBetweenTheLinesOfTheLog()
    {
        Lines all;
        Log log([&all](const std::string& line) { all.push_back(line.substr(18)); });
        Scan scan;
        QObject::connect(&scan.process, &ZvMultiDirectoryListModelProcess::started,
                         [&all] { all.emplace_back("started()"); });
        QObject::connect(&scan.process, &ZvMultiDirectoryListModelProcess::stopped,
                         [&all] { all.emplace_back("stopped()"); });
        QObject::connect(&scan.process, &ZvMultiDirectoryListModelProcess::nextBatch,
                         [&all] { all.emplace_back("nextBatch()"); });
        const FileTree tree(named("abc"));
        scan.add(tree.path());
        QCOMPARE(all,
                 (Lines{"Start invoked, already running: false", "starting", "started()", "b",
                        "nextBatch()", "stopping", "stopped()", "stopped"}));
    }

    void batches_data()
    {
        QTest::addColumn<long long>("batchSize");
        QTest::addColumn<int>("files");
        QTest::addColumn<QList<int>>("batches");
        QTest::newRow("2500 by 1000") << 1000LL << 2500 << QList<int>{1000, 1000, 500};
        QTest::newRow("2000 by 1000") << 1000LL << 2000 << QList<int>{1000, 1000};
        QTest::newRow("999 by 1000") << 1000LL << 999 << QList<int>{999};
        QTest::newRow("by 1") << 1LL << 3 << QList<int>{1, 1, 1};
        QTest::newRow("by 0") << 0LL << 1500 << QList<int>{1500};
        QTest::newRow("by less than 0") << -1LL << 1500 << QList<int>{1500};
        QTest::newRow("by the most")
            << std::numeric_limits<long long>::max() << 1500 << QList<int>{1500};
        QTest::newRow("by the least")
            << std::numeric_limits<long long>::min() << 1500 << QList<int>{1500};
        // As an int it would be 1.
        QTest::newRow("by 2^32 + 1") << (1LL << 32) + 1 << 1500 << QList<int>{1500};
        QTest::newRow("nothing") << 1000LL << 0 << QList<int>();
    }

    void batches()
    {
        QFETCH(long long, batchSize);
        QFETCH(int, files);
        QFETCH(QList<int>, batches);
        const FileTree tree;
        tree.files(files);
        Scan scan(batchSize);
        scan.add(tree.path());
        QCOMPARE(scan.batches, batches);
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
    }

    void stopDuringTheSecondPassSendsNoPartialBatch()
    {
        const FileTree tree(named("abcde"));
        Scan scan(2);
        scan.onBatch = [&scan] { scan.process.requestStop(); };
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.batches, QList<int>{2});
        QCOMPARE(scan.signalOrder, QString("(b)"));
        // The line comes on stopped runs, too.
        QCOMPARE(log.take(), runLines());

        // What was sent before comes again.
        scan.onBatch = {};
        scan.process.startScan();
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
    }

    void exceptionEndsTheRunAndIsLogged_data()
    {
        QTest::addColumn<long long>("batchSize");
        QTest::addColumn<bool>("isBehindThePass");
        QTest::newRow("within the second pass") << 1LL << false;
        QTest::newRow("with the last batch") << 1000LL << true;
    }

    void exceptionEndsTheRunAndIsLogged()
    {
        QFETCH(long long, batchSize);
        QFETCH(bool, isBehindThePass);
        const FileTree tree(named("abc"));
        Scan scan(batchSize);
        scan.onBatch = [] { throw std::runtime_error("no room"); };
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.signalOrder, QString("(b)"));
        Lines expected = runLines();
        // Behind the line "b", or in its place.
        const auto b = expected.begin() + 2;
        expected.insert(isBehindThePass ? b + 1 : expected.erase(b), "write 4 FileView: no room");
        QCOMPARE(log.take(), expected);

        // Nothing of it is left behind for the next run.
        scan.onBatch = {};
        scan.process.startScan();
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
        QCOMPARE(log.take(), runLines());
    }

    void stopBetweenRunsEndsNothing()
    {
        const FileTree tree(named("abc"));
        Scan scan;
        scan.add(tree.path());
        scan.process.requestStop();
        scan.process.startScan();
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
    }

    void endHoldsForAllRuns()
    {
        const FileTree tree(named("abc"));
        Scan scan;
        scan.process.requestEnd();
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.signalOrder, QString("()"));
        QCOMPARE(log.take(), runLines());
    }

    void directoryOfManyEntries()
    {
        const FileTree tree;
#if defined(Q_OS_UNIX)
        const int folder = open(QFile::encodeName(tree.path()).constData(), O_DIRECTORY | O_RDONLY);
        for (int i = 0; i < manyEntries; ++i)
            QCOMPARE(mknodat(folder, std::to_string(i).c_str(), S_IFREG | 0600, 0), 0);
        close(folder);
#else
        tree.files(manyEntries, "%1");
#endif
        Scan scan;
        scan.add(tree.path());
        // One isn't seen, one is seen twice.
        QCOMPARE(scan.rows.size(), manyEntries);
        scan.rows.sort();
        QCOMPARE(scan.rows.removeDuplicates(), 1);
        scan.process.setFilterFixedString("99");
        QStringList rows;
        for (int i = 0; i < manyEntries; ++i) {
            const QString name = QString::number(i);
            if (name.contains("99"))
                rows.append(name);
        }
        QVERIFY(qAbs(scan.rows.size() - rows.size()) <= 1);
    }

private:
#if defined(Q_OS_WIN)
    // Wine reads the whole directory for each file that is made.
    static constexpr int manyEntries = 2'000;
#elif defined(ZV_SANITIZED)
    // Each entry takes several times as long.
    static constexpr int manyEntries = 50'000;
#else
    static constexpr int manyEntries = 1'000'000;
#endif
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModelProcess)
#include "tst_ZvMultiDirectoryListModelProcess.moc"
