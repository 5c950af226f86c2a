// A scan of directories finds all files or writes into the log that it couldn't read them, whichever
// call fails, and the next one finds all. By contract it passes over a listed directory that it can't
// begin to read, without a word.

#include "Drive.h"

#include "models/Scan.h"
#include "support/FileTree.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

using zvtest::Injected;
using zvtest::Operation;

class tst_faults_directories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        // Deeper than the levels that a scan keeps open.
        QString path = m_folder.path();
        for (int level = 0; level < 70; ++level) {
            QVERIFY(zvtest::writeTo(path + "/a.txt", "a"));
            path += "/d";
            QVERIFY(QDir().mkdir(path));
        }
        QVERIFY(QFile::link("a.txt", m_folder.filePath("link.txt")));
        m_files = zvtest::expectedRows({m_folder.path()});
        QVERIFY(m_files.size() >= 70); // by contract not the first entry
        m_files.sort();
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void scan_data() { zvtest::addFaultKinds(); }

    void scan()
    {
        QFETCH(int, kind);
        zvtest::Scan scan;
        QStringList again;
        zvtest::Log log;
        bool isTold = false;
        Operation operation;
        operation.folder = m_folder.path();
        operation.isLarge = true;
        operation.prepare = [&] {
            scan.remove(m_folder.path());
            log.take();
        };
        operation.run = [&] { scan.add(m_folder.path()); };
        operation.problem = [&](const Injected& fault) {
            const zvtest::Lines lines = log.take();
            isTold = std::any_of(lines.begin(), lines.end(), &isError);
            scan.rows.sort();
            const bool isWhole = scan.rows == m_files;
            if (!isSubset(scan.rows))
                return QString("a row that is no file, or one twice");
            const bool isPassedOver = scan.rows.isEmpty() && !isTold;
            if (!isWhole && !isTold && !isPassedOver)
                return QString("files are missing without a word");
            if (isTold && fault.call.isEmpty())
                return QString("an error in the log without one");
            if (fault.call.isEmpty() && !isWhole)
                return QString("%1 of %2 files").arg(scan.rows.size()).arg(m_files.size());
            if (!scan.signalOrder.startsWith('(') || !scan.signalOrder.endsWith(')'))
                return "signals " + scan.signalOrder;
            return QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    void stoppedWalkGoesOnWhereItWas()
    {
        int opening = 0;
        const int all = callsWhile([&] {
            zvtest::Scan scan;
            QObject::connect(&scan.process, &ZvMultiDirectoryListModelProcess::started,
                             [&opening] { opening = zv_faults_calls(); });
            scan.add(m_folder.path());
        });
        QVERIFY(opening > 0 && all > opening + 70);
        for (int number = opening + 1; number <= all; number += 5) {
            zvtest::Scan scan;
            const int before = callsWhile([&] { scan.add(m_folder.path()); }, number,
                                          [&scan] { scan.process.requestStop(); });
            QCOMPARE(scan.rows, QStringList());
            QCOMPARE(scan.signalOrder, QString("()"));
            const zvtest::Log log;
            const int after = callsWhile([&scan] { scan.process.startScan(); });
            QCOMPARE(before + after, all);
            QCOMPARE(log.lines, zvtest::runLines());
            scan.rows.sort();
            QCOMPARE(scan.rows, m_files);
        }
    }

    void directoriesThatVanishDuringTheWalk()
    {
        QStringList names;
        for (int i = 0; i < 6; ++i) {
            for (const char* const pattern : {"kept%1/a.txt", "kept%1/b/c.txt", "lost%1/a.txt",
                                              "lost%1/b/c.txt", "lost%1/b/d/e.txt"})
                names.append(QString::fromLatin1(pattern).arg(i));
        }
        bool isMet = true;
        int told = 0;
        for (int number = 1; isMet; ++number) {
            const zvtest::FileTree tree(names, QDir::tempPath());
            zvtest::Scan scan;
            zvtest::Log log;
            isMet = false;
            callsWhile([&] { scan.add(tree.path()); }, number,
                       [&] {
                           isMet = true;
                           for (int i = 0; i < 6; ++i)
                               tree.remove(QString("lost%1").arg(i));
                       });
            QVERIFY(scan.signalOrder.startsWith('(') && scan.signalOrder.endsWith(')'));
            const zvtest::Lines lines = log.take();
            const bool isTold = std::any_of(lines.begin(), lines.end(), &isError);
            told += isTold ? 1 : 0;
            for (const QString& name : names) {
                const QString row = QDir::toNativeSeparators(tree.path(name));
                if (name.startsWith("kept"))
                    QVERIFY2(isTold || scan.rows.contains(row), qPrintable(row));
            }
            // What the log tells doesn't outlast the walk: another one lists what is left.
            scan.process.reloadPaths();
            QCOMPARE(scan.rows, zvtest::expectedRows({tree.path()}));
            QCOMPARE(log.take(), zvtest::runLines());
        }
        QVERIFY(told > 0);
    }

    void directoryThatMayNotBeReadEndsTheWalk()
    {
        const zvtest::FileTree tree({"first/a.txt", "first/b.txt", "mixed/locked/d.txt",
                                     "mixed/locked/e.txt", "last/f.txt"},
                                    QDir::tempPath());
        const auto path = [&tree](const char* name) { return tree.path(QLatin1String(name)); };
        zvtest::Log log;
        zvtest::Scan scan;
        scan.add(path("first"));
        const auto addWithout = [&](int call) {
            log.take();
            const zv_fault denied = {call, zv_fault_fail, noPermission, 0};
            const zvtest::Faults faults(path("mixed"), denied);
            scan.add(path("mixed"));
            return QByteArray(zv_faults_struck());
        };
        // As a listed directory it is passed over without a word.
        QVERIFY(isOpening(addWithout(1)));
        QCOMPARE(log.take(), zvtest::runLines());
        scan.remove(path("mixed"));
        // Met on the way it ends the walk, and what was found is sent.
        for (int call = 2; !isOpening(addWithout(call)); ++call) {
            QVERIFY(call < 100);
            scan.remove(path("mixed"));
        }
        const zvtest::Lines lines = log.take();
        const auto error = std::find_if(lines.begin(), lines.end(), &isError);
        QVERIFY(error != lines.end());
        QVERIFY2(error->find("recursive_directory_iterator::operator++") != std::string::npos,
                 error->c_str());
        QCOMPARE(scan.rows, zvtest::expectedRows({path("first")}));
        // A later run goes no further, and a new walk finds all.
        scan.process.startScan();
        QCOMPARE(log.take(), zvtest::runLines());
        QCOMPARE(scan.rows, zvtest::expectedRows({path("first")}));
        scan.add(path("last"));
        QCOMPARE(scan.rows, zvtest::expectedRows({path("first"), path("mixed"), path("last")}));
        QCOMPARE(log.take(), zvtest::runLines());
    }

private:
#if defined(Q_OS_WIN)
    static constexpr int noPermission = 5;
#else
    static constexpr int noPermission = EACCES;
#endif

    /// The number of calls that \p work makes on files below the temporary folder. Before the one with that number
    /// \p meanwhile is called.
    static int callsWhile(const std::function<void()>& work, int number = 0,
                          std::function<void()> meanwhile = {})
    {
        s_meanwhile = std::move(meanwhile);
        const zv_fault other = {number, zv_fault_meanwhile, 0, 0, [] { s_meanwhile(); }};
        const zvtest::Faults faults(QDir::tempPath(), other);
        work();
        return zv_faults_calls();
    }

    static bool isOpening(const QByteArray& call)
    {
        return call.startsWith("open") || call == "FindFirstFileExW";
    }

    static bool isError(const std::string& line)
    {
        return line.find("FileView: ") == std::string::npos
            || line.find("rror") != std::string::npos;
    }

    bool isSubset(const QStringList& rows) const
    {
        return std::includes(m_files.begin(), m_files.end(), rows.begin(), rows.end());
    }

    static inline std::function<void()> s_meanwhile;

    const QTemporaryDir m_folder;
    QStringList m_files;
};

QTEST_GUILESS_MAIN(tst_faults_directories)
#include "tst_faults_directories.moc"
