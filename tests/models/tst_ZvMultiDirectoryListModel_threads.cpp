// The model and its scan, which runs on a thread of its own.

#include "DirectoryListModel.h"

#include "support/FileTree.h"
#include "support/WalkOracle.h"

#include <zvutil/ZvFilePath.h>

#include <zv_logging/host.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <random>
#include <string>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#elif defined(Q_OS_WIN)
#include <windows.h>

#include <tlhelp32.h>
#endif

using zvtest::Change;
using zvtest::FileTree;
using zvtest::Hold;
using zvtest::Model;
using zvtest::rowsOf;
using zvtest::scanOf;
using zvtest::Watched;

namespace {

#if defined(Q_OS_LINUX)

int threadCount()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

#elif defined(Q_OS_WIN)

int threadCount()
{
    HANDLE const all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof(thread);
    int count = 0;
    for (BOOL isThere = Thread32First(all, &thread); isThere != FALSE;
         isThere = Thread32Next(all, &thread))
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(all);
    return count;
}

#endif

/// Counts the scans that have begun and those that have ended, whatever model they belong to.
class Scans
{
public:
    Scans()
    {
        zvutil::logging::host::setObserver([this](const std::string& call) {
            if (call == "write 1 FileView: starting")
                ++begun;
            else if (call == "write 1 FileView: stopped")
                ++ended;
        });
    }

    ~Scans() { zvutil::logging::host::setObserver({}); }

    Scans(const Scans&) = delete;
    Scans& operator=(const Scans&) = delete;

    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
};

} // namespace

class tst_ZvMultiDirectoryListModel_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithOneScanOverNothing()
    {
        Watched watched;
        QCOMPARE(watched.model.rows(), 0);
        QVERIFY(watched.settles(1));
        QCoreApplication::processEvents();
        QCOMPARE(watched.journal, QByteArray("r ( )"));
        QCOMPARE(watched.model.rows(), 0);
    }

    void listsWhatTheWalkSees()
    {
        const FileTree tree({"a.txt", "b.bin", "d/c.txt", "d/e/f.txt", "d/e/g.bin", "h/i.txt",
                             "h/j.txt", "k.txt", "l.txt"});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QStringList rows = zvtest::expectedRows({tree.path()});
        QCOMPARE(rowsOf(watched.model), rows);
        QCOMPARE(watched.journal, "r ( ) r ( " + QByteArray::number(rows.size()) + " )");
        watched.model.setAllowedFileTypes({".txt"});
        watched.model.reloadPaths();
        watched.model.setFilterFixedString("F");
        QVERIFY(watched.settles(5));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path()}, {".txt"}, "F"));
    }

    void whatOperationsShowAtOnce_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("empties");
        QTest::newRow("addDirectory")
            << Change([](Model& model, const QString& path) { model.addDirectory(path); }) << false;
        QTest::newRow("removeDirectory")
            << Change([](Model& model, const QString& path) { model.removeDirectory(path); })
            << false;
        QTest::newRow("setDirectories") << Change([](Model& model, const QString& path) {
            model.setDirectories({zvutil::ZvFilePath(path.toStdWString())});
        }) << false;
        QTest::newRow("setAllowedFileTypes")
            << Change([](Model& model, const QString&) { model.setAllowedFileTypes({".txt"}); })
            << true;
        QTest::newRow("setFilterFixedString")
            << Change([](Model& model, const QString&) { model.setFilterFixedString("a"); })
            << true;
        QTest::newRow("reloadPaths")
            << Change([](Model& model, const QString&) { model.reloadPaths(); }) << true;
    }

    void whatOperationsShowAtOnce()
    {
        QFETCH(Change, change);
        QFETCH(bool, empties);
        const FileTree tree({"a.txt"});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        QCOMPARE(watched.model.rows(), 1);
        watched.journal.clear();
        change(watched.model, tree.path());
        QCOMPARE(watched.journal, QByteArray(empties ? "r" : ""));
        QCOMPARE(watched.model.rows(), empties ? 0 : 1);
        QVERIFY(watched.settles(3));
        QVERIFY2(watched.journal.contains("r ("), watched.journal);
    }

    void batchesAreInsertedInTheirOrder_data()
    {
        QTest::addColumn<long long>("batchSize");
        QTest::addColumn<QByteArray>("journal");
        QTest::newRow("by 1000") << 1000LL << QByteArray("r ( ) r ( 1000 1000 500 )");
        QTest::newRow("by 1250") << 1250LL << QByteArray("r ( ) r ( 1250 1250 )");
        QTest::newRow("by 0") << 0LL << QByteArray("r ( ) r ( 2500 )");
        QTest::newRow("by less than 0") << -5LL << QByteArray("r ( ) r ( 2500 )");
    }

    void batchesAreInsertedInTheirOrder()
    {
        QFETCH(long long, batchSize);
        QFETCH(QByteArray, journal);
        const FileTree tree;
        tree.files(2500);
        Watched watched(batchSize);
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        QCOMPARE(watched.journal, journal);
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path()}));
    }

    void batchesOfAnOlderScanAreWiped()
    {
        const FileTree tree({"a/a.txt", "a/b.txt", "b/c.txt"});
        Watched watched(1);
        QVERIFY(watched.settles(1));
        // When a new scan begins, all of the older one waits for this thread yet.
        Hold hold("stopping", 1);
        watched.model.addDirectory(tree.path("a"));
        hold.waitUntilReached();
        watched.model.setDirectories({zvutil::ZvFilePath(tree.path("b").toStdWString())});
        QCOMPARE(watched.journal, QByteArray("r ( )"));
        hold.letGo();
        QVERIFY(watched.settles(3));
        QCOMPARE(watched.journal, QByteArray("r ( ) r ( 1 1 ) r ( 1 )"));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("b")}));
    }

    void changesDuringAScanEndIt()
    {
        const FileTree tree;
        tree.files(300, "%1/a%1.txt");
        Watched watched;
        QVERIFY(watched.settles(1));
        Hold hold("starting", 1);
        watched.model.addDirectory(tree.path());
        hold.waitUntilReached();
        watched.model.setFilterFixedString("a1");
        watched.model.setFilterFixedString("a2");
        hold.letGo();
        QVERIFY(watched.settles(4));
        // The run that was stopped has sent nothing, the last one all that matches its filter.
        const QStringList rows = zvtest::expectedRows({tree.path()}, {}, "a2");
        QCOMPARE(rowsOf(watched.model), rows);
        QVERIFY2(watched.journal.startsWith("r ( ) r r r ( ) r ("), watched.journal);
    }

    void directoriesThatAreAddedDuringAScanStartItAnew()
    {
        const FileTree tree({"b/b.txt"});
        tree.files(300, "a/%1/a%1.txt");
        Watched watched;
        QVERIFY(watched.settles(1));
        Hold hold("starting", 1);
        watched.model.addDirectory(tree.path("a"));
        hold.waitUntilReached();
        watched.model.addDirectory(tree.path("b"));
        watched.model.removeDirectory(QString("/no/such/directory"));
        hold.letGo();
        QVERIFY(watched.settles(4));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("a"), tree.path("b")}));
    }

    void requestsAtAnyMomentEndWithTheLastState()
    {
        const FileTree tree({"b/b1.txt", "b/b2.bin", "b/b3.txt", "c/c1.txt"}, zvtest::quickPlace());
        tree.files(200, "a/%1/a%1.txt");
        std::minstd_rand random(1);
        Watched watched(7);
        QStringList directories;
        QString filter;
        int requests = 1;
        for (int i = 0; i < rounds; ++i) {
            const QString directory = tree.path(QString(QChar('a' + int(random() % 3))));
            switch (random() % 5) {
            case 0:
                watched.model.addDirectory(directory);
                directories.append(directory);
                break;
            case 1:
                watched.model.removeDirectory(directory);
                directories.removeAll(directory);
                break;
            case 2:
                watched.model.reloadPaths();
                break;
            default:
                filter = QString::number(random() % 30);
                watched.model.setFilterFixedString(filter);
                break;
            }
            ++requests;
            for (auto pumps = random() % 4; pumps > 0; --pumps)
                QCoreApplication::processEvents();
            if (random() % 8 == 0)
                QThread::usleep(random() % 2000);
        }
        QVERIFY(watched.settles(requests));
        QCoreApplication::processEvents();
        QCOMPARE(watched.scans, requests);
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows(directories, {}, filter));
    }

    void modelsMayGoAtAnyMoment()
    {
        const FileTree tree;
        tree.files(500, "%1/a.txt");
        std::minstd_rand random(1);
        const Scans scans;
        for (int i = 0; i < rounds; ++i) {
            auto model = std::make_unique<Model>(10, nullptr);
            for (auto count = random() % 3; count > 0; --count)
                model->addDirectory(tree.path());
            if (random() % 2 == 0)
                QThread::usleep(random() % 3000);
            if (random() % 2 == 0)
                QCoreApplication::processEvents();
            if (random() % 2 == 0)
                model->setFilterFixedString("a");
            model.reset();
            // It has been waited for, and every run has come to its end.
            QCOMPARE(scans.ended.load(), scans.begun.load());
        }
        QVERIFY(scans.begun >= rounds);
    }

    void modelThatGoesEndsItsScan()
    {
        const FileTree tree;
        tree.files(10);
        auto model = std::make_unique<Model>(1, nullptr);
        QObject* const scan = scanOf(*model);
        QVERIFY(scan);
        // It hears a batch on the thread of the scan, before the model could.
        QSignalSpy batches(scan, SIGNAL(nextBatch(QVariantList)));
        QVERIFY(batches.isValid());
        QSemaphore held;
        zvutil::logging::host::setObserver([&held](const std::string& call) {
            if (call != "write 1 FileView: starting")
                return;
            // It ends when the thread is asked to, which is behind the request to end the scan.
            held.release();
            QEventLoop().exec();
        });
        model->addDirectory(tree.path());
        held.acquire();
        model.reset();
        zvutil::logging::host::setObserver({});
        QCOMPARE(batches.count(), 0);
    }

    void modelMayGoFromItsOwnSignals_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("backgroundProcessStopped") << 0;
        QTest::newRow("a timer while rows come") << 1;
    }

    void modelMayGoFromItsOwnSignals()
    {
        QFETCH(int, signal);
        const FileTree tree;
        tree.files(200);
        QPointer<Model> model(new Model(1, nullptr));
        model->addDirectory(tree.path());
        if (signal == 0) {
            connect(model, &Model::backgroundProcessStopped, model, &QObject::deleteLater);
        } else {
            connect(model, &Model::rowsInserted, model, [&model] {
                if (model->rows() == 10)
                    model->deleteLater();
            });
        }
        QTRY_VERIFY_WITH_TIMEOUT(!model, 60'000);
    }

    void noThreadIsLeft()
    {
#if defined(Q_OS_LINUX) || defined(Q_OS_WIN)
        {
            const Model model;
        }
        const int before = threadCount();
        QVERIFY(before > 0);
        for (int i = 0; i < 20; ++i)
            const Model model;
        // The system may take a moment to forget one that has been waited for.
        QTRY_VERIFY_WITH_TIMEOUT(threadCount() <= before, 60'000);
#else
        QSKIP("There is no list of threads");
#endif
    }

    void largeTree()
    {
        const FileTree tree;
        tree.files(largeTreeFiles, "%1.txt");
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        QCOMPARE(watched.model.rows(), largeTreeFiles);
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path()}));
    }

private:
#if defined(ZV_SANITIZED) || defined(Q_OS_WIN)
    // Files are made slowly there, and each event takes long.
    static constexpr int largeTreeFiles = 5'000;
    static constexpr int rounds = 100;
#else
    static constexpr int largeTreeFiles = 50'000;
    static constexpr int rounds = 300;
#endif
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModel_threads)
#include "tst_ZvMultiDirectoryListModel_threads.moc"
