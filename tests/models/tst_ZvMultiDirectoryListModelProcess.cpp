#include "support/FileTree.h"
#include "support/Process.h"
#include "support/WalkModel.h"

#include "impl/models/ZvMultiDirectoryListModelProcess.h"

#include <zvutil/ZvFilePath.h>

#include <zv_logging/host.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <clocale>
#include <functional>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using zvtest::FileTree;
using namespace zvtest::literals;

using Lines = std::vector<std::string>;

Q_DECLARE_METATYPE(Lines)

namespace {

/// The log as the scan writes it.
class Log
{
public:
    using Reaction = std::function<void(const std::string& line)>;

    /// \p reaction is called with each line, from where it is written.
    explicit Log(Reaction reaction = {})
    {
        zvutil::logging::host::setObserver([this, reaction](const std::string& call) {
            lines.push_back(call);
            if (reaction)
                reaction(call);
        });
    }

    ~Log() { zvutil::logging::host::setObserver({}); }

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    Lines take() { return std::exchange(lines, {}); }

    Lines lines;
};

Lines runLines(const Lines& errors = {}, const std::string& isRunning = "false")
{
    Lines lines{"write 1 FileView: Start invoked, already running: " + isRunning,
                "write 1 FileView: starting"};
    lines.insert(lines.end(), errors.begin(), errors.end());
    lines.insert(
        lines.end(),
        {"write 1 FileView: b", "write 1 FileView: stopping", "write 1 FileView: stopped"});
    return lines;
}

#if defined(Q_OS_UNIX)
bool isScanError(const std::string& line)
{
    return line.rfind("write 1 FileView: File scan error: ", 0) == 0;
}
#endif

/// A scan on this thread, so that each operation has its whole effect before it returns.
class Scan
{
public:
    explicit Scan(long long batchSize = 1000)
        : process(batchSize)
    {
        using Process = ZvMultiDirectoryListModelProcess;
        QObject::connect(&process, &Process::started, [this] {
            rows.clear();
            batches.clear();
            signalOrder += QLatin1Char('(');
        });
        QObject::connect(&process, &Process::stopped, [this] { signalOrder += QLatin1Char(')'); });
        QObject::connect(&process, &Process::nextBatch, [this](const QVariantList& batch) {
            batches.append(batch.size());
            for (const QVariant& row : batch)
                rows.append(row.toString());
            signalOrder += QLatin1Char('b');
            if (onBatch)
                onBatch();
        });
    }

    void add(const QString& directory) { process.addDirectory(directory.toStdWString()); }
    void remove(const QString& directory) { process.removeDirectory(directory.toStdWString()); }

    ZvMultiDirectoryListModelProcess process;
    QStringList rows;
    QList<int> batches;
    QString signalOrder;
    std::function<void()> onBatch;
};

/// Names that differ from directory to directory, so that an order can't be right by chance.
QStringList named(const QString& letters)
{
    QStringList names;
    for (const QChar letter : letters)
        names.append(letter + ".txt"_q);
    return names;
}

} // namespace

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
            {"one file", {"a.txt"_q}},
            {"two files", named("ab"_q)},
            {"many files", named("abcdefghijklmnopqrstuvwxyz"_q)},
            {"an empty directory", {"d/"_q}},
            {"empty directories in another", {"d/e/"_q, "d/f/"_q, "d/g/h/"_q}},
            {"one file in one directory", {"d/a.txt"_q}},
            {"one file three levels down", {"d/e/f/a.txt"_q}},
            {"files in one directory", {"d/a.txt"_q, "d/b.txt"_q, "d/c.txt"_q}},
            {"a file and an empty directory", {"a.txt"_q, "d/"_q}},
            {"a file and a directory with files", {"a.txt"_q, "d/b.txt"_q, "d/c.txt"_q}},
            {"files on all levels",
             {"a.txt"_q, "b.txt"_q, "d/c.txt"_q, "d/d.txt"_q, "d/e/f.txt"_q, "d/e/g.txt"_q,
              "d/e/h/i.txt"_q, "d/e/h/j.txt"_q}},
            {"directories side by side",
             {"d/a.txt"_q, "d/b.txt"_q, "e/c.txt"_q, "e/d.txt"_q, "f/e.txt"_q, "f/f.txt"_q}},
            {"directories with the names of files",
             {"d.txt/a.txt"_q, "d.txt/b.bin"_q, "e.bin/a.txt"_q, "e.bin/f.txt/c.txt"_q}},
            {"names that aren't ASCII",
             {"ä/ö.txt"_q, "ä/€.txt"_q, "ü.txt"_q, "日本/語.txt"_q, "𝄞.txt"_q}},
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
             {QStringList(), QStringList{".txt"_q}, QStringList{".bin"_q, ".TXT"_q}}) {
            Scan scan;
            scan.process.setAllowedFileTypes(types);
            scan.add(tree.path());
            QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, types));
            scan.process.setFilterFixedString("A"_q);
            QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, types, "A"_q));
        }
    }

    void firstEntryIsNeverListedAndTheLastOneTwice()
    {
        const FileTree tree(named("ab"_q));
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 2);
        QCOMPARE(scan.rows[0], scan.rows[1]);
    }

    void singleEntryIsListedOnce()
    {
        const FileTree tree({"a.txt"_q});
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows, QStringList{QDir::toNativeSeparators(tree.path("a.txt"_q))});
    }

    void walkThatEndsInSubdirectoriesListsTheOneThatItIsCutBackTo()
    {
        const FileTree tree({"d.txt/e/a.txt"_q});
        Scan scan;
        scan.add(tree.path());
        const QString directory = QDir::toNativeSeparators(tree.path("d.txt"_q));
        const QString file = QDir::toNativeSeparators(tree.path("d.txt/e/a.txt"_q));
        QCOMPARE(scan.rows, (QStringList{file, directory}));
        scan.process.setAllowedFileTypes({".txt"_q});
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, (QStringList{file, directory}));
        // It has the name of the directory for the filter, too.
        scan.process.setFilterFixedString("D.T"_q);
        QCOMPARE(scan.rows, QStringList{directory});
        scan.process.setAllowedFileTypes({".bin"_q});
        scan.process.setFilterFixedString({});
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, QStringList());
    }

    void directoriesAreWalkedInTheOrderOfTheirList_data()
    {
        QTest::addColumn<QStringList>("list");
        QTest::newRow("none") << QStringList();
        QTest::newRow("two") << QStringList{"files"_q, "deep"_q};
        QTest::newRow("two the other way") << QStringList{"deep"_q, "files"_q};
        QTest::newRow("one twice") << QStringList{"files"_q, "files"_q};
        QTest::newRow("one in the other") << QStringList{"."_q, "files"_q};
        QTest::newRow("single entries") << QStringList{"one"_q, "one"_q, "files"_q, "one"_q};
        QTest::newRow("empty, alone") << QStringList{"empty"_q};
        QTest::newRow("empty, first: the rest isn't walked") << QStringList{"empty"_q, "files"_q};
        QTest::newRow("empty, in the middle: the rest isn't walked")
            << QStringList{"files"_q, "empty"_q, "deep"_q};
        QTest::newRow("empty, last") << QStringList{"files"_q, "empty"_q};
        QTest::newRow("missing") << QStringList{"missing"_q};
        QTest::newRow("missing, first: passed over") << QStringList{"missing"_q, "files"_q};
        QTest::newRow("missing, in the middle: passed over")
            << QStringList{"files"_q, "missing"_q, "missing"_q, "deep"_q};
        QTest::newRow("missing, last") << QStringList{"files"_q, "missing"_q};
        QTest::newRow("a file: passed over") << QStringList{"files/a.txt"_q, "deep"_q};
        QTest::newRow("empty behind missing") << QStringList{"missing"_q, "empty"_q, "files"_q};
    }

    void directoriesAreWalkedInTheOrderOfTheirList()
    {
        QFETCH(QStringList, list);
        const FileTree tree({"files/a.txt"_q, "files/b.txt"_q, "files/c.txt"_q, "deep/d/e.txt"_q,
                             "deep/f/g.txt"_q, "deep/h.txt"_q, "one/i.txt"_q, "empty/"_q});
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
        const FileTree tree({"empty/"_q, "files/a.txt"_q});
        Scan scan;
        scan.add(tree.path("empty"_q));
        scan.add(tree.path("files"_q));
        QCOMPARE(scan.rows, QStringList());
        scan.process.startScan();
        QCOMPARE(scan.rows, QStringList());
        tree.file("empty/b.txt"_q);
        scan.process.startScan();
        QCOMPARE(scan.rows, QStringList());
        scan.process.reloadPaths();
        QCOMPARE(scan.rows.size(), 2);
    }

    void textsThatAreNoDirectoryArePassedOver_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("NUL inside") << QDir::tempPath() + QChar(u'\0') + "x"_q;
        QTest::newRow("NUL at the start") << QString(QChar(u'\0'));
        QTest::newRow("wildcards") << QDir::tempPath() + "/*?"_q;
        QTest::newRow("unpaired surrogates") << "/x"_q + QChar(0xD800) + QChar(0xDC00).toLower();
        QTest::newRow("relative") << "no/such/directory"_q;
        QTest::newRow("very long") << "/x"_q.repeated(100'000);
        QTest::newRow("a name that is too long")
            << QDir::tempPath() + QLatin1Char('/') + QString(300, QLatin1Char('x'));
        QTest::newRow("a drive that isn't there") << "Q:"_q;
        QTest::newRow("a server that isn't there") << "\\\\?\\no"_q;
    }

    void textsThatAreNoDirectoryArePassedOver()
    {
        QFETCH(QString, text);
        const FileTree tree(named("ab"_q));
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
        const FileTree tree({"d/a.txt"_q});
        Scan scan;
        scan.add(tree.path("d"_q) + suffix);
        QCOMPARE(scan.rows,
                 QStringList{QDir::toNativeSeparators(tree.path("d"_q)) + shown + "a.txt"_q});
        // All forms are the same directory to a removal.
        scan.remove(QDir::toNativeSeparators(tree.path("d"_q)));
        QCOMPARE(scan.rows, QStringList());
    }

    void removalTakesAllThatAreEqualAndKeepsTheOrder()
    {
        const FileTree tree({"a/a.txt"_q, "b/b.txt"_q, "c/c.txt"_q});
        const auto path = [&tree](const char* name) { return tree.path(QLatin1String(name)); };
        Scan scan;
        for (const char* name : {"c", "a", "b", "a/", "c", "a\\"})
            scan.add(path(name));
        QCOMPARE(scan.rows.size(), 6);
        scan.remove(path("a"));
        QCOMPARE(scan.rows, zvtest::expectedRows({path("c"), path("b"), path("c")}));
        scan.signalOrder.clear();
        scan.remove(path("A"));
        QCOMPARE(scan.signalOrder, "(b)"_q);
        QCOMPARE(scan.rows, zvtest::expectedRows({path("c"), path("b"), path("c")}));
    }

    void runsOfARun()
    {
        Log log;
        Scan scan;
        scan.process.startScan();
        QCOMPARE(log.take(), runLines());
        QCOMPARE(scan.signalOrder, "()"_q);
        const FileTree tree(named("abc"_q));
        scan.add(tree.path());
        QCOMPARE(log.take(), runLines());
        QCOMPARE(scan.signalOrder, "()(b)"_q);
    }

    void runDoesNotNest()
    {
        Scan scan;
        bool nested = false;
        const FileTree tree(named("abc"_q));
        scan.onBatch = [&] {
            if (!std::exchange(nested, true))
                scan.process.startScan();
        };
        Log log;
        scan.add(tree.path());
        Lines lines = runLines();
        lines.insert(lines.begin() + 3, "write 1 FileView: Start invoked, already running: true");
        QCOMPARE(log.take(), lines);
        QCOMPARE(scan.signalOrder, "(b)"_q);
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
        const FileTree tree(named("abc"_q));
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
        const FileTree tree(named("abcde"_q));
        Scan scan(2);
        scan.onBatch = [&scan] { scan.process.requestStop(); };
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.batches, QList<int>{2});
        QCOMPARE(scan.signalOrder, "(b)"_q);
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
        const FileTree tree(named("abc"_q));
        Scan scan(batchSize);
        scan.onBatch = [] { throw std::runtime_error("no room"); };
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.signalOrder, "(b)"_q);
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
        const FileTree tree(named("abc"_q));
        Scan scan;
        scan.add(tree.path());
        scan.process.requestStop();
        scan.process.startScan();
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
    }

    void endHoldsForAllRuns()
    {
        const FileTree tree(named("abc"_q));
        Scan scan;
        scan.process.requestEnd();
        Log log;
        scan.add(tree.path());
        QCOMPARE(scan.signalOrder, "()"_q);
        QCOMPARE(log.take(), runLines());
    }

    void extensions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("types");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("equal") << "a.txt" << QStringList{".txt"_q} << true;
        QTest::newRow("case of the name") << "a.TxT" << QStringList{".txt"_q} << true;
        QTest::newRow("case of the type") << "a.txt" << QStringList{".Txt"_q} << true;
        QTest::newRow("second type") << "a.txt" << QStringList{".bin"_q, ".txt"_q} << true;
        QTest::newRow("no such type") << "a.txt" << QStringList{".bin"_q} << false;
        QTest::newRow("no dot in the type") << "a.txt" << QStringList{"txt"_q} << false;
        QTest::newRow("wildcard") << "a.txt" << QStringList{"*.txt"_q, ".*"_q, ".t?t"_q} << false;
        QTest::newRow("beginning") << "a.txt" << QStringList{".tx"_q, ".txtx"_q} << false;
        QTest::newRow("last of two") << "a.tar.gz" << QStringList{".gz"_q} << true;
        QTest::newRow("both of two") << "a.tar.gz" << QStringList{".tar.gz"_q, ".tar"_q} << false;
        QTest::newRow("none") << "a" << QStringList{".txt"_q} << false;
        QTest::newRow("none, and the empty type") << "a" << QStringList{""_q} << true;
        QTest::newRow("a dot at the start begins none")
            << ".profile" << QStringList{".profile"_q} << false;
        QTest::newRow("and the empty type") << ".profile" << QStringList{""_q} << true;
        QTest::newRow("dots at the start") << "..txt" << QStringList{".txt"_q} << true;
        QTest::newRow("no types") << "a.txt" << QStringList{} << true;
        QTest::newRow("not ASCII") << "a.€𝄞"_q << QStringList{".€𝄞"_q} << true;
        QTest::newRow("NUL in the type")
            << "a.txt" << QStringList{".txt"_q + QChar(u'\0')} << false;
#if defined(Q_OS_UNIX)
        QTest::newRow("dot at the end") << "a." << QStringList{"."_q} << true;
        QTest::newRow("alternate stream") << "a.gz:b.txt" << QStringList{".gz"_q} << true;
        QTest::newRow("what looks like a drive") << "a:b.txt" << QStringList{".txt"_q} << false;
        QTest::newRow("backslash") << "a.bin\\b" << QStringList{".bin"_q} << false;
        QTest::newRow("behind a backslash") << "a\\b.txt" << QStringList{".txt"_q} << true;
#endif
    }

    void extensions()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, types);
        QFETCH(bool, isListed);
        const FileTree tree({name});
        Scan scan;
        scan.process.setAllowedFileTypes(types);
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), isListed ? 1 : 0);
    }

    void typesActOnWhatIsYetToBeFound()
    {
        const FileTree tree({"a.txt"_q, "b.bin"_q, "c.txt"_q, "d.bin"_q, "e.txt"_q, "f.bin"_q});
        const QStringList text{".txt"_q};
        Scan scan;
        scan.process.setAllowedFileTypes(text);
        scan.add(tree.path());
        const QStringList texts = zvtest::expectedRows({tree.path()}, text);
        QCOMPARE(scan.rows, texts);
        scan.process.setAllowedFileTypes({});
        QCOMPARE(scan.rows, texts);
        scan.process.reloadPaths();
        const QStringList all = zvtest::expectedRows({tree.path()});
        QCOMPARE(scan.rows, all);
        scan.process.setAllowedFileTypes(text);
        QCOMPARE(scan.rows, all);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, texts);
    }

    void filters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("empty") << "d/abc.txt"
                               << "" << true;
        QTest::newRow("inside") << "d/abc.txt"
                                << "b" << true;
        QTest::newRow("start") << "d/abc.txt"
                               << "abc" << true;
        QTest::newRow("end") << "d/abc.txt"
                             << "txt" << true;
        QTest::newRow("all") << "d/abc.txt"
                             << "abc.txt" << true;
        QTest::newRow("more than all") << "d/abc.txt"
                                       << "abc.txtx" << false;
        QTest::newRow("case of the name") << "d/ABC.txt"
                                          << "abc" << true;
        QTest::newRow("case of the text") << "d/abc.txt"
                                          << "ABC" << true;
        QTest::newRow("not in it") << "d/abc.txt"
                                   << "x.t" << false;
        QTest::newRow("directory") << "dir/abc.txt"
                                   << "dir" << false;
        QTest::newRow("separator") << "d/abc.txt"
                                   << "/abc" << false;
        QTest::newRow("backslash") << "d/abc.txt"
                                   << "\\abc" << false;
        QTest::newRow("no wildcards") << "d/abc.txt"
                                      << "a*c" << false;
        QTest::newRow("blank") << "d/a c.txt"
                               << " " << true;
        QTest::newRow("not ASCII") << "d/x€𝄞x"_q
                                   << "€𝄞"_q << true;
        QTest::newRow("not ASCII, in upper case, in the locale \"C\"") << "d/ä.txt"_q
                                                                       << "Ä"_q << false;
        QTest::newRow("NUL") << "d/abc.txt" << QString(QChar(u'\0')) << false;
        QTest::newRow("very long") << "d/abc.txt" << QString(1'000'000, QLatin1Char('a')) << false;
#if defined(Q_OS_UNIX)
        QTest::newRow("before a backslash in the name") << "d/ab\\c"
                                                        << "ab" << false;
        QTest::newRow("behind a backslash in the name") << "d/ab\\c"
                                                        << "c" << true;
#endif
    }

    void filters()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(bool, isListed);
        const FileTree tree({name});
        Scan scan;
        // The directory that the path is cut back to is none of this type.
        scan.process.setFilterFixedString(text);
        scan.add(tree.path());
        QCOMPARE(scan.rows.contains(QDir::toNativeSeparators(tree.path(name))), isListed);
    }

    void upperCaseIsThatOfTheGlobalLocale()
    {
        std::locale locale;
        try {
            locale = std::locale("C.UTF-8");
        } catch (const std::runtime_error&) {
            QSKIP("There is no such locale");
        }
        const FileTree tree({"ä.é"_q});
        const std::locale before = std::locale::global(locale);
        Scan scan;
        std::locale::global(before);
        scan.process.setAllowedFileTypes({".É"_q});
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("Ä"_q);
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("A"_q);
        QCOMPARE(scan.rows.size(), 0);
        // What was global when it was made counts.
        Scan plain;
        plain.add(tree.path());
        plain.process.setFilterFixedString("Ä"_q);
        QCOMPARE(plain.rows.size(), 0);
    }

    void localeOfTheCLibraryDoesNotFold()
    {
        const FileTree tree({"\u00E4.\u00E9"_q});
        const std::string before = std::setlocale(LC_ALL, nullptr);
        const auto back = qScopeGuard([&before] { std::setlocale(LC_ALL, before.c_str()); });
        // By itself it knows the letters beyond ASCII, on Windows at least.
        std::setlocale(LC_ALL, "");
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00E4"_q);
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00C4"_q);
        QCOMPARE(scan.rows.size(), 0);
    }

    void newFilterAsksNoDisk()
    {
        const FileTree tree(named("abc"_q));
        Scan scan;
        scan.add(tree.path());
        const QStringList rows = scan.rows;
        for (const QString& name : named("abc"_q))
            tree.remove(name);
        scan.process.setFilterFixedString("T"_q);
        QCOMPARE(scan.rows, rows);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, QStringList());
    }

#if defined(Q_OS_UNIX)
    void linksToFilesAreListedAndThoseToDirectoriesNotFollowed()
    {
        const FileTree tree({"files/a.txt"_q, "files/b.txt"_q, "one/"_q, "two/"_q, "three/"_q});
        tree.link("one/link.txt"_q, tree.path("files/a.txt"_q));
        tree.link("two/link"_q, tree.path("files"_q));
        tree.link("three/dangling"_q, "/no/such/file"_q);
        tree.link("three/below a file"_q, tree.path("files/a.txt/x"_q));
        Log log;
        Scan scan;
        scan.add(tree.path("one"_q));
        QCOMPARE(scan.rows, QStringList{tree.path("one/link.txt"_q)});
        scan.add(tree.path("two"_q));
        scan.add(tree.path("three"_q));
        QCOMPARE(scan.rows, QStringList{tree.path("one/link.txt"_q)});
        QVERIFY(std::none_of(log.lines.begin(), log.lines.end(), &isScanError));
        // The same with a link as the listed directory.
        tree.link("link"_q, tree.path("files"_q));
        Scan other;
        other.add(tree.path("link"_q));
        QCOMPARE(other.rows, zvtest::expectedRows({tree.path("link"_q)}));
        QCOMPARE(other.rows.size(), 2);
    }

    void linkAtTheEndOfAWalk()
    {
        // The path is cut back to a directory, and so is what the link is.
        const FileTree tree({"a.txt"_q, "d/e/"_q});
        tree.remove("a.txt"_q);
        tree.link("d/e/link"_q, "/proc/self/status"_q);
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows, QStringList{tree.path("d/e/link"_q)});
    }

    void loopsOfLinksEnd()
    {
        const FileTree tree({"d/a.txt"_q});
        tree.link("d/up"_q, ".."_q);
        tree.link("d/self"_q, "self"_q);
        tree.link("d/one"_q, "two"_q);
        tree.link("d/two"_q, "one"_q);
        Log log;
        Scan scan;
        scan.add(tree.path());
        QVERIFY(scan.rows.contains(tree.path("d/a.txt"_q)));
        const auto errors = std::count_if(log.lines.begin(), log.lines.end(), &isScanError);
        // None of the three is the first entry of the listed directory, which has but one.
        QCOMPARE(errors, 3);
        const auto error = std::find_if(log.lines.begin(), log.lines.end(), &isScanError);
        QVERIFY2(error->find("directory_entry::status") != std::string::npos, error->c_str());
        QVERIFY2(error->find(tree.path("d/"_q).toStdString()) != std::string::npos, error->c_str());
        QCOMPARE(scan.signalOrder, "(b)"_q);
    }

    void otherKindsOfFilesAreNotListed()
    {
        const FileTree tree({"d/a.txt"_q});
        QCOMPARE(mkfifo(QFile::encodeName(tree.path("d/fifo"_q)).constData(), 0600), 0);
        tree.link("d/null"_q, "/dev/null"_q);
        Scan scan;
        scan.add(tree.path());
        QVERIFY(!scan.rows.contains(tree.path("d/fifo"_q)));
        QVERIFY(!scan.rows.contains(tree.path("d/null"_q)));
        QVERIFY(scan.rows.contains(tree.path("d/a.txt"_q)));
        // A listed one isn't opened either, which would wait for a writer.
        scan.add(tree.path("d/fifo"_q));
        QCOMPARE(scan.signalOrder.right(1), ")"_q);
    }

    void namesThatAreNoTextAreListed_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("shown");
        const QString bad(QChar::ReplacementCharacter);
        QTest::newRow("one byte") << QByteArray("\xFF") << bad;
        QTest::newRow("inside") << QByteArray("a\x80z.txt") << "a"_q + bad + "z.txt"_q;
        QTest::newRow("cut off") << QByteArray("ab\xC3") << "ab"_q + bad;
        QTest::newRow("beside a character") << QByteArray("\xC3\xA4\xE4") << "ä"_q + bad;
        QTest::newRow("byte order mark")
            << QByteArray("\xEF\xBB\xBFx") << QStringLiteral("\uFEFFx");
        QTest::newRow("byte order mark in front of a bad byte")
            << QByteArray("\xEF\xBB\xBF\xFF") << QStringLiteral("\uFEFF") + bad;
    }

    void namesThatAreNoTextAreListed()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, shown);
        const FileTree tree({"d/a.txt"_q});
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
        const QString prefix = tree.path("d/"_q) + shown + QLatin1Char('/');
        for (const QString& file : {shown, "b.txt"_q, "c.txt"_q})
            QVERIFY2(scan.rows.contains(prefix + file),
                     qPrintable(scan.rows.join(QLatin1Char('\n'))));
        QVERIFY(scan.rows.contains(tree.path("d/a.txt"_q)));
        QCOMPARE(log.take(), runLines());
        scan.process.setFilterFixedString(shown);
        QVERIFY(scan.rows.contains(prefix + shown));
    }

    void directoriesThatCanNotBeReadEndTheWalk()
    {
        const FileTree tree({"first/a.txt"_q, "first/b.txt"_q, "locked/"_q, "mixed/c.txt"_q,
                             "mixed/locked/d.txt"_q, "mixed/e.txt"_q, "last/f.txt"_q});
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
                && scan.rows.size() <= 4 && scan.signalOrder.endsWith("(b)"_q)
                && log.take() == runLines();
        }));
        QVERIFY(mode("locked", 0700) && mode("mixed/locked", 0700));
    }

    void linksThatMayNotBeFollowedAreTold()
    {
        const FileTree tree({"d/a.txt"_q, "locked/b.txt"_q});
        tree.link("d/link"_q, tree.path("locked/b.txt"_q));
        const auto mode = [&tree](const char* name, mode_t bits) {
            return chmod(QFile::encodeName(tree.path(QLatin1String(name))).constData(), bits) == 0;
        };
        QVERIFY(mode(".", 0755) && mode("d", 0755) && mode("locked", 0));
        QVERIFY(zvtest::holdsForOrdinaryUser([&tree] {
            const QString parent = tree.path("d"_q);
            Log log;
            Scan scan;
            scan.add(parent);
            // Where the link is the first entry, nobody looks at it.
            const auto errors = std::count_if(log.lines.begin(), log.lines.end(), &isScanError);
            return errors <= 2 && !scan.rows.contains(tree.path("d/link"_q))
                && scan.signalOrder.endsWith(QLatin1Char(')'));
        }));
        QVERIFY(mode("locked", 0700));
    }

    void whatVanishesDuringTheWalk()
    {
        // The log of the first loop of links is the moment at which the rest goes.
        const FileTree tree;
        for (int i = 0; i < 20; ++i) {
            const QString name = "d%1"_q.arg(i);
            tree.file(name + "/a.txt"_q);
            tree.link(name + "/self"_q, "self"_q);
        }
        tree.file("other/b.txt"_q);
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
                    tree.remove("d%1"_q.arg(i));
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
                 QStringList{tree.path("other/b.txt"_q)} + QStringList{tree.path("other"_q)});
    }

    void stoppedWalkGoesOnWhereItWas()
    {
        const FileTree tree;
        tree.files(50, "d/%1.txt"_q);
        tree.link("d/self"_q, "self"_q);
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
        scan.process.setFilterFixedString("1"_q);
        tree.remove("d/self"_q);
        QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}, {}, "1"_q));
        scan.process.setFilterFixedString(".TX"_q);
        QStringList expected = zvtest::expectedRows({tree.path()}, {}, ".tx"_q);
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
        QStringList rows{deepest + "/a.txt"_q, deepest + "/link"_q};
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
        scan.process.setFilterFixedString("Z"_q);
        QVERIFY2(scan.rows.size() >= levels - 1 && scan.rows.size() <= levels + 1,
                 qPrintable(QString::number(scan.rows.size())));
        const QString deepest = tree.path() + "/m"_q.repeated(levels - 1);
        QVERIFY(scan.rows.contains(deepest + "/z"_q));
        removeDeep(tree.path(), "m", levels);
    }
#endif

    void directoryOfManyEntries()
    {
        const FileTree tree;
#if defined(Q_OS_UNIX)
        const int folder = open(QFile::encodeName(tree.path()).constData(), O_DIRECTORY | O_RDONLY);
        for (int i = 0; i < manyEntries; ++i)
            QCOMPARE(mknodat(folder, std::to_string(i).c_str(), S_IFREG | 0600, 0), 0);
        close(folder);
#else
        tree.files(manyEntries, "%1"_q);
#endif
        Scan scan;
        scan.add(tree.path());
        // One isn't seen, one is seen twice.
        QCOMPARE(scan.rows.size(), manyEntries);
        scan.rows.sort();
        QCOMPARE(scan.rows.removeDuplicates(), 1);
        scan.process.setFilterFixedString("99"_q);
        QStringList rows;
        for (int i = 0; i < manyEntries; ++i) {
            const QString name = QString::number(i);
            if (name.contains("99"_q))
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

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModelProcess)
#include "tst_ZvMultiDirectoryListModelProcess.moc"
