#include "support/FileTree.h"
#include "support/WalkModel.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>

#include <zv_logging/host.h>

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaMethod>
#include <QPointer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <system_error>
#include <type_traits>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using zvtest::FileTree;
using namespace zvtest::literals;

namespace {

class Model : public ZvMultiDirectoryListModel
{
public:
    using ZvMultiDirectoryListModel::setDirectories;
    using ZvMultiDirectoryListModel::ZvMultiDirectoryListModel;

    int rows() const { return rowCount({}); }

    /// The scan, asked for while one of its signals is handled by this model.
    QObject* scan() const { return sender(); }
};

QStringList rowsOf(const QAbstractItemModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.index(row, 0).data().toString());
    return rows;
}

/// A model that is watched, by Qt's checker and by a journal of its signals: `(` and `)` for start
/// and end of a scan, `r` for a reset, which the model has done before others hear of the start,
/// and the number of rows that are inserted, each behind a blank.
class Watched
{
public:
    explicit Watched(long long batchSize = 1000)
        : model(batchSize, nullptr)
        , m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        QObject::connect(&model, &Model::backgroundProcessStarted, &model, [this] { note("("); });
        QObject::connect(&model, &Model::backgroundProcessStopped, &model, [this] {
            note(")");
            ++scans;
        });
        QObject::connect(&model, &Model::modelReset, &model, [this] { note("r"); });
        QObject::connect(&model, &Model::rowsInserted, &model,
                         [this](const QModelIndex& parent, int first, int last) {
                             if (parent.isValid() || last != model.rows() - 1)
                                 note("wrong");
                             note(QByteArray::number(last - first + 1));
                         });
    }

    /// Waits for the end of as many scans as there have been requests, the first included.
    bool settles(int requests)
    {
        return QTest::qWaitFor([this, requests] { return scans >= requests; }, 240'000);
    }

    Model model;
    QByteArray journal;
    int scans = 0;

private:
    void note(const QByteArray& what) { journal += (journal.isEmpty() ? "" : " ") + what; }

    QAbstractItemModelTester m_tester;
};

using Request = std::function<void(Model&)>;

/// The scan of a model that has just been made, told by its first signal.
QObject* scanOf(Model& model)
{
    QObject* scan = nullptr;
    // Not with the model as context, since it would be its own sender then.
    QObject context;
    QObject::connect(&model, &Model::backgroundProcessStopped, &context,
                     [&] { scan = model.scan(); });
    return QTest::qWaitFor([&scan] { return scan != nullptr; }, 240'000) ? scan : nullptr;
}

/// Holds the scan at a line of its log until it is let go.
class Hold
{
public:
    /// Holds the scan at the \p count-th time that it writes \p line.
    Hold(const std::string& line, int count)
        : m_left(count)
    {
        zvutil::logging::host::setObserver([this, line](const std::string& call) {
            if (call == "write 1 FileView: " + line && --m_left == 0) {
                m_reached.release();
                m_mayGoOn.acquire();
            }
        });
    }

    ~Hold() { zvutil::logging::host::setObserver({}); }

    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    void waitUntilReached() { m_reached.acquire(); }
    void letGo() { m_mayGoOn.release(); }

private:
    std::atomic<int> m_left;
    QSemaphore m_reached;
    QSemaphore m_mayGoOn;
};

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

using Change = void (*)(Model& model, const QString& path);

} // namespace

Q_DECLARE_METATYPE(Change)

Q_DECLARE_METATYPE(Request)

class tst_ZvMultiDirectoryListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        static_assert(std::is_base_of_v<QAbstractListModel, ZvMultiDirectoryListModel>);
        static_assert(!std::is_copy_constructible_v<ZvMultiDirectoryListModel>);
        const QMetaObject& meta = ZvMultiDirectoryListModel::staticMetaObject;
        QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
        const QByteArrayList names = {"backgroundProcessStarted()", "backgroundProcessStopped()"};
        for (int i = 0; i < 2; ++i) {
            const QMetaMethod method = meta.method(meta.methodOffset() + i);
            QCOMPARE(method.methodSignature(), names[i]);
            QCOMPARE(method.methodType(), QMetaMethod::Signal);
        }
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
        QObject parent;
        auto* const model = new ZvMultiDirectoryListModel(&parent);
        QCOMPARE(model->parent(), &parent);
    }

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
        const FileTree tree({"a.txt"_q, "b.bin"_q, "d/c.txt"_q, "d/e/f.txt"_q, "d/e/g.bin"_q,
                             "h/i.txt"_q, "h/j.txt"_q, "k.txt"_q, "l.txt"_q});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QStringList rows = zvtest::expectedRows({tree.path()});
        QCOMPARE(rowsOf(watched.model), rows);
        QCOMPARE(watched.journal, "r ( ) r ( " + QByteArray::number(rows.size()) + " )");
        watched.model.setAllowedFileTypes({".txt"_q});
        watched.model.reloadPaths();
        watched.model.setFilterFixedString("F"_q);
        QVERIFY(watched.settles(5));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path()}, {".txt"_q}, "F"_q));
    }

    void everyTextTypeAddsAndRemoves_data()
    {
        QTest::addColumn<Change>("add");
        QTest::addColumn<Change>("remove");
        QTest::newRow("QString") << Change([](Model& model, const QString& path) {
            model.addDirectory(path);
        }) << Change([](Model& model, const QString& path) { model.removeDirectory(path); });
        QTest::newRow("ZvFilePath") << Change([](Model& model, const QString& path) {
            model.addDirectory(zvutil::ZvFilePath(path.toStdWString()));
        }) << Change([](Model& model, const QString& path) {
            model.removeDirectory(zvutil::ZvFilePath(path.toStdWString()));
        });
        QTest::newRow("std::filesystem::path") << Change([](Model& model, const QString& path) {
            model.addDirectory(zvtest::stdPath(path));
        }) << Change([](Model& model, const QString& path) {
            model.removeDirectory(zvtest::stdPath(path));
        });
        QTest::newRow("char") << Change([](Model& model, const QString& path) {
            model.addDirectory(path.toLocal8Bit().constData());
        }) << Change([](Model& model, const QString& path) {
            model.removeDirectory(path.toLocal8Bit().constData());
        });
        QTest::newRow("wchar_t") << Change([](Model& model, const QString& path) {
            model.addDirectory(path.toStdWString().c_str());
        }) << Change([](Model& model, const QString& path) {
            model.removeDirectory(path.toStdWString().c_str());
        });
    }

    void everyTextTypeAddsAndRemoves()
    {
        QFETCH(Change, add);
        QFETCH(Change, remove);
        // Narrow text of Windows has no such characters.
#if defined(Q_OS_WIN)
        const FileTree tree({"plain/a.txt"_q});
        const QString path = tree.path("plain"_q);
#else
        const FileTree tree({"ä€𝄞/a.txt"_q});
        const QString path = tree.path("ä€𝄞"_q);
#endif
        Watched watched;
        add(watched.model, path);
        QVERIFY(watched.settles(2));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({path}));
        QCOMPARE(watched.model.rows(), 1);
        remove(watched.model, path + QLatin1Char('/'));
        QVERIFY(watched.settles(3));
        QCOMPARE(watched.model.rows(), 0);
    }

    void fileThatVanishesStaysARow()
    {
        const FileTree tree({"a.txt"_q});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QStringList rows = rowsOf(watched.model);
        QCOMPARE(rows.size(), 1);
        QVERIFY(QFile::remove(tree.path("a.txt"_q)));
        // A filter looks at what has been found, not at the disk.
        watched.model.setFilterFixedString("a"_q);
        QVERIFY(watched.settles(3));
        QCOMPARE(rowsOf(watched.model), rows);
        watched.model.reloadPaths();
        QVERIFY(watched.settles(4));
        QCOMPARE(watched.model.rows(), 0);
    }

    void pathsOfTheFileSystemEndAtANul()
    {
        const FileTree tree({"plain/a.txt"_q});
        const QString path = tree.path("plain"_q);
        std::filesystem::path::string_type longer = zvtest::stdPath(path).native();
        longer += std::filesystem::path::value_type();
        longer += zvtest::stdPath("x"_q).native();
        Watched watched;
        watched.model.addDirectory(std::filesystem::path(longer));
        QVERIFY(watched.settles(2));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({path}));
        // As the neighbour of that type has it.
        watched.model.removeDirectory(path.toStdWString().c_str());
        QVERIFY(watched.settles(3));
        QCOMPARE(watched.model.rows(), 0);
        watched.model.addDirectory(path);
        QVERIFY(watched.settles(4));
        watched.model.removeDirectory(std::filesystem::path(longer));
        QVERIFY(watched.settles(5));
        QCOMPARE(watched.model.rows(), 0);
    }

    void textsThatAreInvalidThrowAndChangeNothing()
    {
#if defined(Q_OS_WIN)
        QSKIP("Narrow text is in a code page, in which every byte has a meaning");
#else
        const FileTree tree({"a.txt"_q});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        QVERIFY_EXCEPTION_THROWN(watched.model.addDirectory("/\xFF"), std::system_error);
        QVERIFY_EXCEPTION_THROWN(watched.model.removeDirectory("/\xFF"), std::system_error);
        const std::filesystem::path path("/\xFF");
        QVERIFY_EXCEPTION_THROWN(watched.model.addDirectory(path), std::system_error);
        QVERIFY_EXCEPTION_THROWN(watched.model.removeDirectory(path), std::system_error);
        // A request that comes behind would wait for any that they have made.
        watched.model.reloadPaths();
        QVERIFY(watched.settles(3));
        QCOMPARE(watched.journal, QByteArray("r ( ) r ( 1 ) r r ( 1 )"));
#endif
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
            << Change([](Model& model, const QString&) { model.setAllowedFileTypes({".txt"_q}); })
            << true;
        QTest::newRow("setFilterFixedString")
            << Change([](Model& model, const QString&) { model.setFilterFixedString("a"_q); })
            << true;
        QTest::newRow("reloadPaths")
            << Change([](Model& model, const QString&) { model.reloadPaths(); }) << true;
    }

    void whatOperationsShowAtOnce()
    {
        QFETCH(Change, change);
        QFETCH(bool, empties);
        const FileTree tree({"a.txt"_q});
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

    void setDirectoriesReplacesAll()
    {
        const FileTree tree({"a/a.txt"_q, "b/b.txt"_q, "c/c.txt"_q});
        Watched watched;
        watched.model.addDirectory(tree.path("a"_q));
        watched.model.setDirectories({zvutil::ZvFilePath(tree.path("c"_q).toStdWString()),
                                      zvutil::ZvFilePath(tree.path("b"_q).toStdWString())});
        QVERIFY(watched.settles(3));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("c"_q), tree.path("b"_q)}));
        watched.model.setDirectories({});
        QVERIFY(watched.settles(4));
        QCOMPARE(watched.model.rows(), 0);
    }

    void rolesAndIndexes()
    {
        const FileTree tree({"a.txt"_q});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QModelIndex index = watched.model.index(0);
        const QString path = QDir::toNativeSeparators(tree.path("a.txt"_q));
        for (int role = -1; role < Qt::UserRole + 2; ++role) {
            const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole;
            const QVariant data = watched.model.data(index, role);
            QCOMPARE(data, isShown ? QVariant(path) : QVariant());
            QVERIFY(!isShown || data.type() == QVariant::String);
            QVERIFY(!watched.model.data({}, role).isValid());
        }
        QCOMPARE(watched.model.rowCount(index), 0);
        const QAbstractItemModel& base = watched.model;
        QCOMPARE(base.columnCount(), 1);
        QVERIFY(!watched.model.setData(index, path));
        QCOMPARE(watched.model.flags(index),
                 Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
        QCOMPARE(watched.model.headerData(0, Qt::Horizontal).toInt(), 1);
        // An index that outlives its row has no data.
        watched.model.reloadPaths();
        QVERIFY(!watched.model.data(index, Qt::DisplayRole).isValid());
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

    void defaultIsBatchesOf1000()
    {
        const FileTree tree;
        tree.files(1001);
        ZvMultiDirectoryListModel model;
        QList<int> batches;
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [&batches](const QModelIndex&, int first, int last) {
                    batches.append(last - first + 1);
                });
        model.addDirectory(tree.path());
        QTRY_COMPARE_WITH_TIMEOUT(batches, (QList<int>{1000, 1}), 60'000);
    }

    void batchesOfAnOlderScanAreWiped()
    {
        const FileTree tree({"a/a.txt"_q, "a/b.txt"_q, "b/c.txt"_q});
        Watched watched(1);
        QVERIFY(watched.settles(1));
        // When a new scan begins, all of the older one waits for this thread yet.
        Hold hold("stopping", 1);
        watched.model.addDirectory(tree.path("a"_q));
        hold.waitUntilReached();
        watched.model.setDirectories({zvutil::ZvFilePath(tree.path("b"_q).toStdWString())});
        QCOMPARE(watched.journal, QByteArray("r ( )"));
        hold.letGo();
        QVERIFY(watched.settles(3));
        QCOMPARE(watched.journal, QByteArray("r ( ) r ( 1 1 ) r ( 1 )"));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("b"_q)}));
    }

    void eachRequestEndsTheScan_data()
    {
        QTest::addColumn<Request>("request");
        QTest::newRow("add") << Request([](Model& model) { model.addDirectory("/no/such"_q); });
        QTest::newRow("remove") << Request([](Model& model) { model.removeDirectory("/no"_q); });
        QTest::newRow("set") << Request([](Model& model) { model.setDirectories({}); });
        QTest::newRow("reload") << Request(&Model::reloadPaths);
        QTest::newRow("types") << Request([](Model& model) { model.setAllowedFileTypes({}); });
        QTest::newRow("filter") << Request([](Model& model) { model.setFilterFixedString("a"_q); });
    }

    void eachRequestEndsTheScan()
    {
        QFETCH(Request, request);
        const FileTree tree;
        tree.files(30, "%1/a%1.txt"_q);
        Watched watched;
        QVERIFY(watched.settles(1));
        Hold hold("starting", 1);
        watched.model.addDirectory(tree.path());
        hold.waitUntilReached();
        request(watched.model);
        hold.letGo();
        QVERIFY(watched.settles(3));
        // The journal's second pair of parentheses is the scan that was under way.
        const QByteArrayList scans = watched.journal.split('(');
        QCOMPARE(scans.size(), 4);
        QCOMPARE(scans[2].left(scans[2].indexOf(')')), QByteArray(" "));
    }

    void changesDuringAScanEndIt()
    {
        const FileTree tree;
        tree.files(300, "%1/a%1.txt"_q);
        Watched watched;
        QVERIFY(watched.settles(1));
        Hold hold("starting", 1);
        watched.model.addDirectory(tree.path());
        hold.waitUntilReached();
        watched.model.setFilterFixedString("a1"_q);
        watched.model.setFilterFixedString("a2"_q);
        hold.letGo();
        QVERIFY(watched.settles(4));
        // The run that was stopped has sent nothing, the last one all that matches its filter.
        const QStringList rows = zvtest::expectedRows({tree.path()}, {}, "a2"_q);
        QCOMPARE(rowsOf(watched.model), rows);
        QVERIFY2(watched.journal.startsWith("r ( ) r r r ( ) r ("), watched.journal);
    }

    void directoriesThatAreAddedDuringAScanStartItAnew()
    {
        const FileTree tree({"b/b.txt"_q});
        tree.files(300, "a/%1/a%1.txt"_q);
        Watched watched;
        QVERIFY(watched.settles(1));
        Hold hold("starting", 1);
        watched.model.addDirectory(tree.path("a"_q));
        hold.waitUntilReached();
        watched.model.addDirectory(tree.path("b"_q));
        watched.model.removeDirectory("/no/such/directory"_q);
        hold.letGo();
        QVERIFY(watched.settles(4));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("a"_q), tree.path("b"_q)}));
    }

    void requestsAtAnyMomentEndWithTheLastState()
    {
        const FileTree tree({"b/b1.txt"_q, "b/b2.bin"_q, "b/b3.txt"_q, "c/c1.txt"_q},
                            zvtest::quickPlace());
        tree.files(200, "a/%1/a%1.txt"_q);
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
        tree.files(500, "%1/a.txt"_q);
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
                model->setFilterFixedString("a"_q);
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

    void scanHasThePriorityOfItsMaker()
    {
        std::atomic<int> priority{-1};
        std::atomic<bool> isElsewhere{false};
        zvutil::logging::host::setObserver([&](const std::string& /*call*/) {
            priority = QThread::currentThread()->priority();
            isElsewhere = QThread::currentThread() != thread();
        });
        {
            Watched watched;
            QVERIFY(watched.settles(1));
        }
        zvutil::logging::host::setObserver({});
        QVERIFY(isElsewhere);
        QCOMPARE(priority.load(), int(QThread::InheritPriority));
    }

    void emptyBatchIsNotToldOf()
    {
        const FileTree tree({"a.txt"_q});
        Model model;
        QObject* const scan = scanOf(model);
        QVERIFY(scan);
        QStringList signalNames;
        const auto note = [&signalNames](const char* name) {
            return [&signalNames, name] { signalNames.append(QString::fromLatin1(name)); };
        };
        connect(&model, &Model::rowsAboutToBeInserted, &model, note("about to insert"));
        connect(&model, &Model::rowsInserted, &model, note("inserted"));
        connect(&model, &Model::modelReset, &model, note("reset"));
        const auto send = [scan](const QVariantList& batch) {
            return QMetaObject::invokeMethod(scan, "nextBatch", Qt::DirectConnection,
                                             Q_ARG(QVariantList, batch));
        };
        QVERIFY(send({}));
        QCOMPARE(signalNames, QStringList());
        QCOMPARE(model.rows(), 0);
        QVERIFY(send({"a"_q}));
        QCOMPARE(signalNames, (QStringList{"about to insert"_q, "inserted"_q}));
        QVERIFY(send({}));
        QCOMPARE(signalNames.size(), 2);
        QCOMPARE(rowsOf(model), QStringList{"a"_q});
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
#if defined(Q_OS_LINUX)
        const auto threads = [] {
            return QDir("/proc/self/task"_q).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        };
        {
            const Model model;
        }
        const auto before = threads();
        for (int i = 0; i < 20; ++i)
            const Model model;
        // The system may take a moment to forget one that has been waited for.
        QTRY_VERIFY_WITH_TIMEOUT(threads() <= before, 60'000);
#else
        QSKIP("There is no list of threads");
#endif
    }

    void largeTree()
    {
        const FileTree tree;
        tree.files(largeTreeFiles, "%1.txt"_q);
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

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModel)
#include "tst_ZvMultiDirectoryListModel.moc"
