#include "DirectoryListModel.h"

#include "support/FileTree.h"
#include "support/WalkOracle.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>

#include <zv_logging/host.h>

#include <QMetaMethod>
#include <QTest>
#include <QThread>

#include <atomic>
#include <functional>
#include <string>
#include <system_error>
#include <type_traits>

using zvtest::Change;
using zvtest::FileTree;
using zvtest::Hold;
using zvtest::Model;
using zvtest::rowsOf;
using zvtest::scanOf;
using zvtest::Watched;

namespace {

using Request = std::function<void(Model&)>;

} // namespace

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
        const FileTree tree({"plain/a.txt"});
        const QString path = tree.path("plain");
#else
        const FileTree tree({"ä€𝄞/a.txt"});
        const QString path = tree.path("ä€𝄞");
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
        const FileTree tree({"a.txt"});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QStringList rows = rowsOf(watched.model);
        QCOMPARE(rows.size(), 1);
        QVERIFY(QFile::remove(tree.path("a.txt")));
        // A filter looks at what has been found, not at the disk.
        watched.model.setFilterFixedString("a");
        QVERIFY(watched.settles(3));
        QCOMPARE(rowsOf(watched.model), rows);
        watched.model.reloadPaths();
        QVERIFY(watched.settles(4));
        QCOMPARE(watched.model.rows(), 0);
    }

    void pathsOfTheFileSystemEndAtANul()
    {
        const FileTree tree({"plain/a.txt"});
        const QString path = tree.path("plain");
        std::filesystem::path::string_type longer = zvtest::stdPath(path).native();
        longer += std::filesystem::path::value_type();
        longer += zvtest::stdPath("x").native();
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
        const FileTree tree({"a.txt"});
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

    void setDirectoriesReplacesAll()
    {
        const FileTree tree({"a/a.txt", "b/b.txt", "c/c.txt"});
        Watched watched;
        watched.model.addDirectory(tree.path("a"));
        watched.model.setDirectories({zvutil::ZvFilePath(tree.path("c").toStdWString()),
                                      zvutil::ZvFilePath(tree.path("b").toStdWString())});
        QVERIFY(watched.settles(3));
        QCOMPARE(rowsOf(watched.model), zvtest::expectedRows({tree.path("c"), tree.path("b")}));
        watched.model.setDirectories({});
        QVERIFY(watched.settles(4));
        QCOMPARE(watched.model.rows(), 0);
    }

    void rolesAndIndexes()
    {
        const FileTree tree({"a.txt"});
        Watched watched;
        watched.model.addDirectory(tree.path());
        QVERIFY(watched.settles(2));
        const QModelIndex index = watched.model.index(0);
        const QString path = QDir::toNativeSeparators(tree.path("a.txt"));
        for (int role = -1; role < Qt::UserRole + 2; ++role) {
            const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole;
            const QVariant data = watched.model.data(index, role);
            QCOMPARE(data, isShown ? QVariant(path) : QVariant());
            QVERIFY(!isShown || data.type() == QVariant::String);
            QVERIFY(!watched.model.data({}, role).isValid());
        }
        QCOMPARE(watched.model.data(index), QVariant(path));
        QCOMPARE(watched.model.rowCount(), 1);
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

    void eachRequestEndsTheScan_data()
    {
        QTest::addColumn<Request>("request");
        QTest::newRow("add") << Request(
            [](Model& model) { model.addDirectory(QString("/no/such")); });
        QTest::newRow("remove") << Request(
            [](Model& model) { model.removeDirectory(QString("/no")); });
        QTest::newRow("set") << Request([](Model& model) { model.setDirectories({}); });
        QTest::newRow("reload") << Request(&Model::reloadPaths);
        QTest::newRow("types") << Request([](Model& model) { model.setAllowedFileTypes({}); });
        QTest::newRow("filter") << Request([](Model& model) { model.setFilterFixedString("a"); });
    }

    void eachRequestEndsTheScan()
    {
        QFETCH(Request, request);
        const FileTree tree;
        tree.files(30, "%1/a%1.txt");
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
        const FileTree tree({"a.txt"});
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
        QVERIFY(send({"a"}));
        QCOMPARE(signalNames, (QStringList{"about to insert", "inserted"}));
        QVERIFY(send({}));
        QCOMPARE(signalNames.size(), 2);
        QCOMPARE(rowsOf(model), QStringList{"a"});
    }
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModel)
#include "tst_ZvMultiDirectoryListModel.moc"
