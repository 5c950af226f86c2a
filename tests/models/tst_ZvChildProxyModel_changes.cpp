// Changes of the source, and what the proxy announces of them.

#include "Trees.h"

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <utility>
#include <vector>

using zvtest::at;
using zvtest::MovableTree;
using zvtest::Proxy;
using zvtest::root;
using zvtest::shown;
using zvtest::Signals;
using zvtest::tree;

namespace {

/// A list of two rows, of which a change of its layout drops the first.
class Dropping : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rows;
    }

    QVariant data(const QModelIndex& /*index*/, int /*role*/) const override { return {}; }

    void drop()
    {
        Q_EMIT layoutAboutToBeChanged();
        m_rows = 1;
        changePersistentIndex(index(0, 0), QModelIndex());
        Q_EMIT layoutChanged();
    }

private:
    int m_rows = 2;
};

/// All indexes of a model below \p parent.
QModelIndexList allOf(const QAbstractItemModel& model, const QModelIndex& parent = {})
{
    QModelIndexList indexes;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        indexes.append(index);
        indexes.append(allOf(model, index));
    }
    return indexes;
}

bool isBelow(const QModelIndex& index, const QModelIndex& above)
{
    QModelIndex i = index;
    while (i.isValid() && i != above)
        i = i.parent();
    return i.isValid();
}

/// One change of any kind and at any place, but for the end of \p kept. Returns false if the one
/// that was drawn can't be made.
bool changeAnything(MovableTree& tree, QRandomGenerator& random, const QModelIndex& kept)
{
    const QModelIndexList indexes = allOf(tree);
    const auto any = [&]() -> QModelIndex {
        const int drawn = random.bounded(indexes.size() + 1);
        return drawn == indexes.size() ? QModelIndex() : indexes[drawn];
    };
    const QModelIndex parent = any();
    const QModelIndex other = any();
    const int rows = tree.rowCount(parent);
    switch (random.bounded(5)) {
    case 0:
        tree.insert(parent, random.bounded(rows + 1));
        return true;
    case 1: {
        const int row = rows > 0 ? random.bounded(rows) : 0;
        if (rows == 0 || isBelow(kept, tree.index(row, 0, parent)))
            return false;
        tree.remove(parent, row);
        return true;
    }
    case 2:
        return rows > 0
            && tree.move(parent, random.bounded(rows), other,
                         random.bounded(tree.rowCount(other) + 1));
    case 3:
        tree.reverse(parent);
        return true;
    default:
        if (parent.isValid())
            tree.rename(parent);
        return parent.isValid();
    }
}

} // namespace

class tst_ZvChildProxyModel_changes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rootFollowsItsRow()
    {
        const auto source = tree(2);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        source->insertRow(0, new QStandardItem("new"));
        QCOMPARE(shown(proxy), QString("10 10b 11 11b 12 12b"));
        source->removeRow(0);
        source->sort(0, Qt::DescendingOrder);
        QCOMPARE(source->item(1)->text(), QString("1"));
        source->sort(1);
        QCOMPARE(shown(proxy), QString("10 10b 11 11b 12 12b"));
    }

    void rootThatTheSourceRemovesIsNone()
    {
        const auto source = tree(2);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        source->removeRow(1);
        QCOMPARE(proxy.rowCount(root), 2);
        QVERIFY(!proxy.index(0, 0, root).isValid());
        source->clear();
        QCOMPARE(proxy.rowCount(root), 0);
    }

    void changesInTheBranchAreAnnounced()
    {
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        const QAbstractItemModelTester tester(&proxy);
        QStringList journal;
        const auto text = [](const QModelIndex& index) {
            return index.isValid() ? index.data().toString() : QString("-");
        };
        connect(&proxy, &QAbstractItemModel::rowsInserted, this,
                [&](const QModelIndex& parent, int first, int last) {
                    journal.append(
                        QString("inserted %1 %2 %3").arg(text(parent)).arg(first).arg(last));
                });
        connect(&proxy, &QAbstractItemModel::rowsRemoved, this,
                [&](const QModelIndex& parent, int first, int last) {
                    journal.append(
                        QString("removed %1 %2 %3").arg(text(parent)).arg(first).arg(last));
                });
        connect(&proxy, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& first, const QModelIndex& last) {
                    journal.append(QString("changed %1 %2").arg(text(first), text(last)));
                });
        source->item(1)->insertRow(1, new QStandardItem("x"));
        source->item(1)->child(0)->removeRows(0, 2);
        source->item(1)->child(2)->child(1)->setText("y");
        source->item(1)->removeRow(0);
        QCOMPARE(journal,
                 (QStringList{"inserted - 1 1", "removed 10 0 1", "changed y y", "removed - 0 0"}));
        QCOMPARE(shown(proxy),
                 QString("x  11 11b (110 110b y 111b 112 112b) 12 12b "
                         "(120 120b 121 121b 122 122b)"));
    }

    void changesBesideTheBranchAreNotAnnounced()
    {
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        const QString before = shown(proxy);
        const QPersistentModelIndex kept = proxy.index(1, 0, root);
        const Signals announced(proxy);
        source->item(0)->insertRow(0, new QStandardItem);
        source->item(0)->removeRow(1);
        source->item(0)->insertColumn(0, {new QStandardItem});
        source->item(0)->removeColumn(0);
        source->item(0)->child(0)->setText("x");
        source->item(1)->setText("the root itself");
        source->appendRow(new QStandardItem);
        source->insertRow(0, new QStandardItem);
        source->removeRow(1);
        source->appendColumn({new QStandardItem});
        source->removeColumn(source->columnCount() - 1);
        source->item(2)->sortChildren(0, Qt::DescendingOrder);
        QCOMPARE(announced.names(), QStringList());
        QCOMPARE(shown(proxy), before);
        QCOMPARE(kept.row(), 1);
        QCOMPARE(kept.data().toString(), QString("11"));
    }

    void endOfTheRootResets_data()
    {
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("its row") << QByteArray("1") << 1 << -1;
        QTest::newRow("its column") << QByteArray("1") << -1 << 0;
        QTest::newRow("the row above") << QByteArray() << 1 << -1;
        QTest::newRow("the column above") << QByteArray() << -1 << 0;
    }

    void endOfTheRootResets()
    {
        QFETCH(QByteArray, parent);
        QFETCH(int, row);
        QFETCH(int, column);
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "11"));
        QCOMPARE(proxy.rowCount(root), 3);
        const Signals announced(proxy);
        const QModelIndex above = at(*source, parent);
        QVERIFY(row < 0 ? source->removeColumn(column, above) : source->removeRow(row, above));
        QCOMPARE(announced.names(), (QStringList{"about to reset", "reset"}));
        QCOMPARE(proxy.rowCount(root), source->rowCount());
        QVERIFY(!proxy.index(0, 0, root).isValid());
    }

    void withoutRootTheTopLevelIsAnnounced()
    {
        const auto source = tree(2);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        const Signals announced(proxy);
        source->item(0)->appendRow(new QStandardItem);
        source->item(0)->removeRow(0);
        source->item(0)->child(0)->setText("x");
        QCOMPARE(announced.names(), QStringList());
        source->appendRow(new QStandardItem);
        source->removeRow(0);
        source->appendColumn({});
        QCOMPARE(announced.names(),
                 (QStringList{"about to insert rows - 3 3", "inserted rows - 3 3",
                              "about to remove rows - 0 0", "removed rows - 0 0",
                              "about to insert columns", "inserted columns"}));
        QCOMPARE(proxy.rowCount(root), 3);
    }

    void rowsAtTheTopAreThoseOfTheSource()
    {
        // What follows from an invalid index that stands for the top of both.
        const auto source = tree(2);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        QVERIFY(proxy.insertRows(0, 3, QModelIndex()));
        QCOMPARE(source->rowCount(), 6);
        QCOMPARE(proxy.rowCount(root), 3);
        QVERIFY(proxy.removeRows(0, 2, QModelIndex()));
        QCOMPARE(source->rowCount(), 4);
        QVERIFY(proxy.insertColumns(0, 1, QModelIndex()));
        QCOMPARE(source->columnCount(), 3);
        QVERIFY(proxy.removeColumns(0, 1, QModelIndex()));
        QCOMPARE(shown(proxy), QString("10 10b 11 11b 12 12b"));
        // Further down the rows are those that are shown.
        QVERIFY(proxy.insertRows(0, 1, proxy.index(0, 0, root)));
        QCOMPARE(at(*source, "10").model(), source.get());
        QCOMPARE(proxy.rowCount(proxy.index(0, 0, root)), 1);
    }

    void connectionsOfOthersStay()
    {
        const auto source = tree(2);
        Proxy proxy;
        int count = 0;
        connect(source.get(), &QAbstractItemModel::rowsInserted, &proxy, [&count] { ++count; });
        connect(source.get(), SIGNAL(rowsRemoved(QModelIndex, int, int)), &proxy,
                SIGNAL(modelReset()));
        const Signals announced(proxy);
        proxy.setSourceModel(source.get());
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        const int before = announced.names().size();
        source->appendRow(new QStandardItem);
        QCOMPARE(count, 1);
        QCOMPARE(announced.names().size(), before);
        source->removeRow(source->rowCount() - 1);
        QCOMPARE(announced.names().mid(before), QStringList("reset"));
    }

    void sourceMayBeChangedByWhatIsAnnounced()
    {
        const auto first = tree(3);
        const auto second = tree(3);
        Proxy proxy;
        const auto change = [&] {
            proxy.setSourceModel(second.get());
            proxy.setRootModelIndex(at(*second, "2"));
        };
        using Model = QAbstractItemModel;
        const auto expectChange = [&](auto signal, auto work) {
            proxy.setSourceModel(first.get());
            proxy.setRootModelIndex(at(*first, "1"));
            const QPersistentModelIndex held = proxy.index(0, 0, root);
            const auto connection = connect(&proxy, signal, this, change);
            work();
            disconnect(connection);
            QCOMPARE(proxy.sourceModel(), second.get());
            QCOMPARE(proxy.index(0, 0, root).data().toString(), QString("20"));
            QVERIFY(!held.isValid());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        QStandardItem* const item = first->item(1);
        expectChange(&Model::rowsAboutToBeInserted, [item] { item->appendRow(new QStandardItem); });
        expectChange(&Model::rowsInserted, [item] { item->appendRow(new QStandardItem); });
        expectChange(&Model::rowsRemoved, [item] { item->removeRow(0); });
        expectChange(&Model::dataChanged, [item] { item->child(0)->setText("x"); });
        expectChange(&Model::layoutAboutToBeChanged,
                     [item] { item->sortChildren(0, Qt::DescendingOrder); });
        expectChange(&Model::layoutChanged, [item] { item->sortChildren(0); });
        MovableTree movable(3);
        proxy.setSourceModel(&movable);
        proxy.setRootModelIndex(at(movable, "1"));
        const auto connection = connect(&proxy, &Model::rowsAboutToBeMoved, this, change);
        QVERIFY(movable.move(at(movable, "1"), 0, at(movable, "1"), 3));
        disconnect(connection);
        QCOMPARE(proxy.index(0, 0, root).data().toString(), QString("20"));
    }

    void layoutChanges_data()
    {
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<bool>("isAnnounced");
        QTest::newRow("of the branch") << QByteArray("1") << true;
        QTest::newRow("further down") << QByteArray("11") << true;
        QTest::newRow("beside it") << QByteArray("2") << false;
        QTest::newRow("of all") << QByteArray() << true;
    }

    void layoutChanges()
    {
        QFETCH(QByteArray, parent);
        QFETCH(bool, isAnnounced);
        const auto source = tree(3);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        const QAbstractItemModelTester tester(&proxy);
        std::vector<std::pair<QPersistentModelIndex, QPersistentModelIndex>> held;
        for (int row = 0; row < 3; ++row) {
            const QModelIndex index = proxy.index(row, 0, root);
            held.emplace_back(index, proxy.mapToSource(index));
            const QModelIndex below = proxy.index(row, 1, index);
            held.emplace_back(below, proxy.mapToSource(below));
        }
        const Signals announced(proxy);
        if (parent.isEmpty())
            source->sort(0, Qt::DescendingOrder);
        else
            source->itemFromIndex(at(*source, parent))->sortChildren(0, Qt::DescendingOrder);
        QCOMPARE(announced.names(),
                 isAnnounced ? (QStringList{"about to change layout", "changed layout"})
                             : QStringList());
        for (const auto& [index, expected] : held)
            QCOMPARE(proxy.mapToSource(index), QModelIndex(expected));
    }

    void rootThatALayoutChangeDropsIsNone()
    {
        Dropping source;
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(source.index(0, 0));
        const Signals announced(proxy);
        source.drop();
        QCOMPARE(announced.names().mid(2), (QStringList{"about to reset", "reset"}));
        QCOMPARE(proxy.rowCount(root), source.rowCount());
    }

    void persistentIndexesFollowAnyChange_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 8; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }

    void persistentIndexesFollowAnyChange()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        const QPersistentModelIndex top = at(source, "11");
        proxy.setRootModelIndex(top);
        const QAbstractItemModelTester tester(&proxy);
        int changes = 0;
        while (changes < 300) {
            std::vector<std::pair<QPersistentModelIndex, QPersistentModelIndex>> held;
            const QModelIndexList indexes = allOf(proxy);
            for (const QModelIndex& index : indexes)
                held.emplace_back(index, proxy.mapToSource(index));
            const QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
            changes += changeAnything(source, random, top) ? 1 : 0;
            for (const auto& [index, expected] : held) {
                if (reset.isEmpty())
                    QCOMPARE(proxy.mapToSource(index), QModelIndex(expected));
            }
            QCOMPARE(shown(proxy), shown(source, top));
        }
    }
};

QTEST_MAIN(tst_ZvChildProxyModel_changes)
#include "tst_ZvChildProxyModel_changes.moc"
