#include "Trees.h"

#include <zvutil/ZvChildProxyModel.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

#include <type_traits>

using zvtest::at;
using zvtest::Proxy;
using zvtest::root;
using zvtest::shown;
using zvtest::tree;

namespace {

static_assert(std::is_base_of_v<QIdentityProxyModel, ZvChildProxyModel>);
static_assert(!std::is_copy_constructible_v<ZvChildProxyModel>);

} // namespace

class tst_ZvChildProxyModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        // It has no meta-object of its own.
        const Proxy proxy;
        QCOMPARE(proxy.metaObject(), &QIdentityProxyModel::staticMetaObject);
        QObject parent;
        auto* const child = new ZvChildProxyModel(&parent);
        QCOMPARE(child->parent(), &parent);
    }

    void isCalledAsAnyModel()
    {
        const auto source = tree(2);
        QObject owner;
        ZvChildProxyModel proxy(&owner);
        QCOMPARE(proxy.parent(), &owner);
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        QCOMPARE(proxy.rowCount(), source->rowCount(at(*source, "1")));
        QCOMPARE(proxy.columnCount(), source->columnCount(at(*source, "1")));
        const QModelIndex first = proxy.index(0, 0);
        QCOMPARE(proxy.data(first), source->data(at(*source, "10")));
        QVERIFY(!proxy.parent(first).isValid());
    }

    void showsTheBranch_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("text");
        QTest::newRow("of a row at the top")
            << QByteArray("1")
            << "10 10b (100 100b 101 101b 102 102b) 11 11b (110 110b 111 111b 112 112b) "
               "12 12b (120 120b 121 121b 122 122b)";
        QTest::newRow("of a row further down") << QByteArray("20") << "200 200b 201 201b 202 202b";
        QTest::newRow("of a row without children") << QByteArray("222") << "";
    }

    void showsTheBranch()
    {
        QFETCH(QByteArray, path);
        QFETCH(QString, text);
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, path.constData()));
        const QAbstractItemModelTester tester(&proxy);
        QCOMPARE(shown(proxy), text);
    }

    void eachParentHasItsOwnCounts()
    {
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        source->item(1)->child(0)->setColumnCount(5);
        source->item(1)->child(0)->setRowCount(4);
        source->item(1)->child(2)->setRowCount(1);
        QCOMPARE(proxy.columnCount(root), 2);
        QCOMPARE(proxy.columnCount(proxy.index(0, 0, root)), 5);
        QCOMPARE(proxy.columnCount(proxy.index(1, 0, root)), 2);
        QCOMPARE(proxy.rowCount(root), 3);
        QCOMPARE(proxy.rowCount(proxy.index(0, 0, root)), 4);
        QCOMPARE(proxy.rowCount(proxy.index(2, 0, root)), 1);
    }

    void withoutRootThereAreRowsButNoIndexes()
    {
        const auto source = tree();
        Proxy proxy;
        proxy.setSourceModel(source.get());
        QCOMPARE(proxy.rowCount(root), 3);
        QCOMPARE(proxy.columnCount(root), 2);
        for (int row = 0; row < 3; ++row)
            QVERIFY(!proxy.index(row, 0, root).isValid());
        QVERIFY(!proxy.mapFromSource(at(*source, "0")).isValid());
        QVERIFY(!proxy.mapFromSource(root).isValid());
        QVERIFY(!proxy.isDescendedFromRoot(at(*source, "0")));
        QVERIFY(!proxy.isDescendedFromRoot(root));
        // An invalid index is no root either.
        proxy.setRootModelIndex(root);
        QCOMPARE(proxy.rowCount(root), 3);
        QVERIFY(!proxy.index(0, 0, root).isValid());
    }

    void withoutSourceItIsEmpty()
    {
        Proxy proxy;
        QCOMPARE(proxy.rowCount(root), 0);
        QCOMPARE(proxy.columnCount(root), 0);
        QVERIFY(!proxy.index(0, 0, root).isValid());
        auto source = tree();
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        source.reset();
        QCOMPARE(proxy.rowCount(root), 0);
        QCOMPARE(proxy.columnCount(root), 0);
        QVERIFY(!proxy.index(0, 0, root).isValid());
        source = tree();
        proxy.setSourceModel(source.get());
        proxy.setSourceModel(nullptr);
        QCOMPARE(proxy.rowCount(root), 0);
    }

    void maps_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("isDescended");
        QTest::addColumn<QByteArray>("mapped");
        QTest::newRow("root") << QByteArray("1") << true << QByteArray();
        QTest::newRow("child") << QByteArray("12") << true << QByteArray("2");
        QTest::newRow("grandchild") << QByteArray("120") << true << QByteArray("20");
        QTest::newRow("great-grandchild") << QByteArray("1201") << true << QByteArray("201");
        QTest::newRow("parent of the root") << QByteArray("") << false << QByteArray();
        QTest::newRow("beside the root") << QByteArray("0") << false << QByteArray();
        QTest::newRow("below a row beside it") << QByteArray("21") << false << QByteArray();
    }

    void maps()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, isDescended);
        QFETCH(QByteArray, mapped);
        const auto source = tree();
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        const QModelIndex index = at(*source, path.constData());
        QCOMPARE(proxy.isDescendedFromRoot(index), isDescended);
        const QModelIndex result = proxy.mapFromSource(index);
        QCOMPARE(result.isValid(), !mapped.isEmpty());
        QCOMPARE(result, at(proxy, mapped.constData()));
        if (!result.isValid())
            return;
        QCOMPARE(proxy.mapToSource(result), index);
        QCOMPARE(result.data(), index.data());
        QCOMPARE(result.flags(), index.flags());
        // The chain of parents ends at the top level.
        int levels = 0;
        QModelIndex top = result;
        for (; top.parent().isValid(); top = top.parent())
            ++levels;
        QCOMPARE(levels, mapped.size() - 1);
        QCOMPARE(top, proxy.index(mapped[0] - '0', 0, root));
    }

    void otherColumnOfTheRootIsOutside()
    {
        const auto source = tree();
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        QVERIFY(!proxy.isDescendedFromRoot(source->index(1, 1)));
        QVERIFY(!proxy.mapFromSource(source->index(1, 1)).isValid());
        QVERIFY(proxy.mapFromSource(source->index(0, 1, at(*source, "1"))).isValid());
    }

    void settingTheRootResets()
    {
        const auto source = tree();
        Proxy proxy;
        proxy.setSourceModel(source.get());
        QSignalSpy about(&proxy, &QAbstractItemModel::modelAboutToBeReset);
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        int rowsBefore = -1;
        int rowsAfter = -1;
        connect(&proxy, &QAbstractItemModel::modelAboutToBeReset, this,
                [&] { rowsBefore = proxy.rowCount(root); });
        connect(&proxy, &QAbstractItemModel::modelReset, this,
                [&] { rowsAfter = proxy.rowCount(root); });
        source->item(1)->removeRow(0);
        proxy.setRootModelIndex(at(*source, "1"));
        QCOMPARE(about.count(), 1);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(rowsBefore, 3);
        QCOMPARE(rowsAfter, 2);
    }

    void settingTheSourceForgetsTheRoot()
    {
        const auto source = tree();
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        // Before anybody hears of it.
        QList<bool> hasRoot;
        connect(&proxy, &QAbstractItemModel::modelAboutToBeReset, this, [&] {
            hasRoot.append(proxy.isDescendedFromRoot(at(*source, "1")));
            hasRoot.append(proxy.index(0, 0, root).isValid());
        });
        QVERIFY(proxy.isDescendedFromRoot(at(*source, "1")));
        proxy.setSourceModel(source.get());
        QCOMPARE(hasRoot, (QList<bool>{false, false}));
        QVERIFY(!proxy.index(0, 0, root).isValid());
        QVERIFY(!proxy.isDescendedFromRoot(at(*source, "1")));
        QCOMPARE(reset.count(), 1);
        const auto other = tree(2);
        proxy.setRootModelIndex(at(*source, "1"));
        hasRoot.clear();
        proxy.setSourceModel(other.get());
        QCOMPARE(hasRoot, (QList<bool>{false, false}));
        proxy.setRootModelIndex(at(*other, "2"));
        QCOMPARE(shown(proxy), QString("20 20b 21 21b 22 22b"));
    }

    void branchMayBeVeryDeep()
    {
        constexpr int depth = 20'000;
        QStandardItemModel source;
        QStandardItem* item = source.invisibleRootItem();
        for (int i = 0; i < depth; ++i) {
            auto* const child = new QStandardItem;
            item->appendRow(child);
            item = child;
        }
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(source.index(0, 0));
        const QModelIndex deepest = proxy.mapFromSource(source.indexFromItem(item));
        QVERIFY(deepest.isValid());
        QVERIFY(!proxy.isDescendedFromRoot(source.index(1, 0)));
        proxy.setSourceModel(nullptr);
        // Qt deletes items by recursion.
        while (item != source.invisibleRootItem()) {
            QStandardItem* const parent =
                item->parent() ? item->parent() : source.invisibleRootItem();
            parent->removeRow(0);
            item = parent;
        }
    }

    void viewShowsIt()
    {
        const auto source = tree(3);
        ZvChildProxyModel proxy;
        proxy.setSourceModel(source.get());
        QTreeView view;
        view.setModel(&proxy);
        proxy.setRootModelIndex(at(*source, "1"));
        view.expandAll();
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        source->item(1)->removeRow(0);
        source->item(1)->appendRow(new QStandardItem("x"));
        QCoreApplication::processEvents();
        QCOMPARE(view.indexAbove(view.indexBelow(proxy.index(0, 0, root))),
                 proxy.index(0, 0, root));
        QCOMPARE(view.model()->rowCount(), 3);
    }
};

QTEST_MAIN(tst_ZvChildProxyModel)
#include "tst_ZvChildProxyModel.moc"
