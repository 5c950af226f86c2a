#include <zvutil/ZvChildProxyModel.h>

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QApplication>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(std::is_base_of_v<QIdentityProxyModel, ZvChildProxyModel>);
static_assert(!std::is_copy_constructible_v<ZvChildProxyModel>);

const QModelIndex root;

class Proxy : public ZvChildProxyModel
{
public:
    using ZvChildProxyModel::isDescendedFromRoot;
    using ZvChildProxyModel::ZvChildProxyModel;
};

/// Rows 0 to 2, each with rows 0 to 2 of two columns, down to the given depth. The text of a row is
/// its path: "12" is the third child of the second row.
void fill(QStandardItem& parent, int depth)
{
    for (int row = 0; depth > 0 && row < 3; ++row) {
        auto* const item = new QStandardItem(parent.text() + QString::number(row));
        auto* const second = new QStandardItem(item->text() + QLatin1Char('b'));
        parent.appendRow({item, second});
        fill(*item, depth - 1);
    }
}

std::unique_ptr<QStandardItemModel> tree(int depth = 4)
{
    auto model = std::make_unique<QStandardItemModel>();
    fill(*model->invisibleRootItem(), depth);
    return model;
}

QModelIndex at(const QAbstractItemModel& model, const char* path)
{
    QModelIndex index;
    for (const char* step = path; *step != '\0'; ++step)
        index = model.index(*step - '0', 0, index);
    return index;
}

/// A tree of one column whose rows can be moved from one parent to another.
class MovableTree : public QAbstractItemModel
{
public:
    struct Node
    {
        QString text;
        Node* parent = nullptr;
        std::vector<std::unique_ptr<Node>> children;
    };

    /// As `tree` has it.
    explicit MovableTree(int depth) { fill(m_top, depth); }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override
    {
        const Node& above = node(parent);
        const bool exists =
            row >= 0 && row < static_cast<int>(above.children.size()) && column == 0;
        return exists ? createIndex(row, 0, above.children[std::size_t(row)].get()) : QModelIndex();
    }

    QModelIndex parent(const QModelIndex& index) const override
    {
        Node* const above = node(index).parent;
        return above && above != &m_top ? createIndex(rowOf(*above), 0, above) : QModelIndex();
    }

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return static_cast<int>(node(parent).children.size());
    }

    int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 1; }

    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? node(index).text : QVariant();
    }

    /// Whether the row may be moved in front of the other row.
    bool move(const QModelIndex& from, int row, const QModelIndex& to, int place)
    {
        auto& source = const_cast<Node&>(node(from));
        auto& target = const_cast<Node&>(node(to));
        if (!beginMoveRows(from, row, row, to, place))
            return false;
        auto taken = std::move(source.children[std::size_t(row)]);
        source.children.erase(source.children.begin() + row);
        if (&source == &target && place > row)
            --place;
        taken->parent = &target;
        target.children.insert(target.children.begin() + place, std::move(taken));
        endMoveRows();
        return true;
    }

    void insert(const QModelIndex& parent, int row)
    {
        auto& above = const_cast<Node&>(node(parent));
        beginInsertRows(parent, row, row);
        auto child = std::make_unique<Node>();
        child->text = QStringLiteral("n%1").arg(++m_inserted);
        child->parent = &above;
        above.children.insert(above.children.begin() + row, std::move(child));
        endInsertRows();
    }

    void remove(const QModelIndex& parent, int row)
    {
        auto& above = const_cast<Node&>(node(parent));
        beginRemoveRows(parent, row, row);
        above.children.erase(above.children.begin() + row);
        endRemoveRows();
    }

    void rename(const QModelIndex& index)
    {
        const_cast<Node&>(node(index)).text += QLatin1Char('!');
        Q_EMIT dataChanged(index, index);
    }

    /// Turns the order of the children round.
    void reverse(const QModelIndex& parent)
    {
        const QList<QPersistentModelIndex> parents = {parent};
        Q_EMIT layoutAboutToBeChanged(parents);
        auto& children = const_cast<Node&>(node(parent)).children;
        std::reverse(children.begin(), children.end());
        const QModelIndexList indexes = persistentIndexList();
        for (const QModelIndex& index : indexes)
            changePersistentIndex(index,
                                  createIndex(rowOf(node(index)), 0, index.internalPointer()));
        Q_EMIT layoutChanged(parents);
    }

    /// Tells of a move of columns, and moves none.
    void tellOfColumns(const QModelIndex& from, const QModelIndex& to)
    {
        QVERIFY(beginMoveColumns(from, 0, 0, to, 0));
        endMoveColumns();
    }

private:
    static void fill(Node& parent, int depth)
    {
        for (int row = 0; depth > 0 && row < 3; ++row) {
            parent.children.push_back(std::make_unique<Node>());
            Node& child = *parent.children.back();
            child.text = parent.text + QString::number(row);
            child.parent = &parent;
            fill(child, depth - 1);
        }
    }

    const Node& node(const QModelIndex& index) const
    {
        // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.UndefReturn): each index has its node
        return index.isValid() ? *static_cast<const Node*>(index.internalPointer()) : m_top;
    }

    static int rowOf(const Node& node)
    {
        const auto& siblings = node.parent->children;
        const auto isIt = [&node](const auto& sibling) { return sibling.get() == &node; };
        return static_cast<int>(std::find_if(siblings.begin(), siblings.end(), isIt)
                                - siblings.begin());
    }

    Node m_top;
    int m_inserted = 0;
};

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

/// What a model announces, in order.
class Signals
{
public:
    explicit Signals(const QAbstractItemModel& model)
    {
        using Model = QAbstractItemModel;
        tellRows(model, &Model::rowsAboutToBeInserted, "about to insert rows");
        tellRows(model, &Model::rowsInserted, "inserted rows");
        tellRows(model, &Model::rowsAboutToBeRemoved, "about to remove rows");
        tellRows(model, &Model::rowsRemoved, "removed rows");
        tell(model, &Model::columnsAboutToBeInserted, "about to insert columns");
        tell(model, &Model::columnsInserted, "inserted columns");
        tell(model, &Model::columnsAboutToBeRemoved, "about to remove columns");
        tell(model, &Model::columnsRemoved, "removed columns");
        tell(model, &Model::rowsAboutToBeMoved, "about to move");
        tell(model, &Model::rowsMoved, "moved");
        tell(model, &Model::columnsAboutToBeMoved, "about to move columns");
        tell(model, &Model::columnsMoved, "moved columns");
        tell(model, &Model::dataChanged, "changed data");
        tell(model, &Model::layoutAboutToBeChanged, "about to change layout");
        tell(model, &Model::layoutChanged, "changed layout");
        tell(model, &Model::modelAboutToBeReset, "about to reset");
        tell(model, &Model::modelReset, "reset");
    }

    const QStringList& names() const { return *m_names; }

private:
    template <typename Signal>
    void tell(const QAbstractItemModel& model, Signal signal, const char* name)
    {
        QObject::connect(&model, signal, &m_context,
                         [names = m_names, name] { names->append(QString::fromUtf8(name)); });
    }

    template <typename Signal>
    void tellRows(const QAbstractItemModel& model, Signal signal, const char* name)
    {
        const auto append = [names = m_names, name](const QModelIndex& parent, int first,
                                                    int last) {
            const QString above = parent.isValid() ? parent.data().toString() : QStringLiteral("-");
            names->append(QStringLiteral("%1 %2 %3 %4")
                              .arg(QString::fromUtf8(name), above, QString::number(first),
                                   QString::number(last)));
        };
        QObject::connect(&model, signal, &m_context, append);
    }

    QObject m_context;
    std::shared_ptr<QStringList> m_names = std::make_shared<QStringList>();
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

/// All that a model shows, as a view would find it.
QString shown(const QAbstractItemModel& model, const QModelIndex& parent = {})
{
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column)
            text += model.index(row, column, parent).data().toString() + QLatin1Char(' ');
        const QString below = shown(model, model.index(row, 0, parent));
        if (!below.isEmpty())
            text += QLatin1Char('(') + below + QLatin1String(") ");
    }
    return text.trimmed();
}

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
        QCOMPARE(shown(proxy), QStringLiteral("20 20b 21 21b 22 22b"));
    }

    void rootFollowsItsRow()
    {
        const auto source = tree(2);
        Proxy proxy;
        proxy.setSourceModel(source.get());
        proxy.setRootModelIndex(at(*source, "1"));
        source->insertRow(0, new QStandardItem(QStringLiteral("new")));
        QCOMPARE(shown(proxy), QStringLiteral("10 10b 11 11b 12 12b"));
        source->removeRow(0);
        source->sort(0, Qt::DescendingOrder);
        QCOMPARE(source->item(1)->text(), QStringLiteral("1"));
        source->sort(1);
        QCOMPARE(shown(proxy), QStringLiteral("10 10b 11 11b 12 12b"));
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
            return index.isValid() ? index.data().toString() : QStringLiteral("-");
        };
        connect(&proxy, &QAbstractItemModel::rowsInserted, this,
                [&](const QModelIndex& parent, int first, int last) {
                    journal.append(
                        QStringLiteral("inserted %1 %2 %3").arg(text(parent)).arg(first).arg(last));
                });
        connect(&proxy, &QAbstractItemModel::rowsRemoved, this,
                [&](const QModelIndex& parent, int first, int last) {
                    journal.append(
                        QStringLiteral("removed %1 %2 %3").arg(text(parent)).arg(first).arg(last));
                });
        connect(&proxy, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& first, const QModelIndex& last) {
                    journal.append(QStringLiteral("changed %1 %2").arg(text(first), text(last)));
                });
        source->item(1)->insertRow(1, new QStandardItem(QStringLiteral("x")));
        source->item(1)->child(0)->removeRows(0, 2);
        source->item(1)->child(2)->child(1)->setText(QStringLiteral("y"));
        source->item(1)->removeRow(0);
        QCOMPARE(journal,
                 (QStringList{QStringLiteral("inserted - 1 1"), QStringLiteral("removed 10 0 1"),
                              QStringLiteral("changed y y"), QStringLiteral("removed - 0 0")}));
        QCOMPARE(shown(proxy),
                 QStringLiteral("x  11 11b (110 110b y 111b 112 112b) 12 12b "
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
        source->item(0)->child(0)->setText(QStringLiteral("x"));
        source->item(1)->setText(QStringLiteral("the root itself"));
        source->appendRow(new QStandardItem);
        source->insertRow(0, new QStandardItem);
        source->removeRow(1);
        source->appendColumn({new QStandardItem});
        source->removeColumn(source->columnCount() - 1);
        source->item(2)->sortChildren(0, Qt::DescendingOrder);
        QCOMPARE(announced.names(), QStringList());
        QCOMPARE(shown(proxy), before);
        QCOMPARE(kept.row(), 1);
        QCOMPARE(kept.data().toString(), QStringLiteral("11"));
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
        QCOMPARE(announced.names(),
                 (QStringList{QStringLiteral("about to reset"), QStringLiteral("reset")}));
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
        source->item(0)->child(0)->setText(QStringLiteral("x"));
        QCOMPARE(announced.names(), QStringList());
        source->appendRow(new QStandardItem);
        source->removeRow(0);
        source->appendColumn({});
        QCOMPARE(
            announced.names(),
            (QStringList{
                QStringLiteral("about to insert rows - 3 3"), QStringLiteral("inserted rows - 3 3"),
                QStringLiteral("about to remove rows - 0 0"), QStringLiteral("removed rows - 0 0"),
                QStringLiteral("about to insert columns"), QStringLiteral("inserted columns")}));
        QCOMPARE(proxy.rowCount(root), 3);
    }

    void movesOfTheTopLevelWithoutRoot()
    {
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        const Signals announced(proxy);
        QVERIFY(source.move(QModelIndex(), 0, QModelIndex(), 2));
        QVERIFY(source.move(at(source, "0"), 0, at(source, "1"), 0));
        QCOMPARE(announced.names(),
                 (QStringList{QStringLiteral("about to move"), QStringLiteral("moved")}));
        QVERIFY(source.move(at(source, "0"), 0, QModelIndex(), 0));
        QCOMPARE(announced.names().mid(2),
                 (QStringList{QStringLiteral("about to reset"), QStringLiteral("reset")}));
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
        QCOMPARE(shown(proxy), QStringLiteral("10 10b 11 11b 12 12b"));
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
        QCOMPARE(announced.names().mid(before), QStringList(QStringLiteral("reset")));
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
            QCOMPARE(proxy.index(0, 0, root).data().toString(), QStringLiteral("20"));
            QVERIFY(!held.isValid());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        QStandardItem* const item = first->item(1);
        expectChange(&Model::rowsAboutToBeInserted, [item] { item->appendRow(new QStandardItem); });
        expectChange(&Model::rowsInserted, [item] { item->appendRow(new QStandardItem); });
        expectChange(&Model::rowsRemoved, [item] { item->removeRow(0); });
        expectChange(&Model::dataChanged, [item] { item->child(0)->setText(QStringLiteral("x")); });
        expectChange(&Model::layoutAboutToBeChanged,
                     [item] { item->sortChildren(0, Qt::DescendingOrder); });
        expectChange(&Model::layoutChanged, [item] { item->sortChildren(0); });
        MovableTree movable(3);
        proxy.setSourceModel(&movable);
        proxy.setRootModelIndex(at(movable, "1"));
        const auto connection = connect(&proxy, &Model::rowsAboutToBeMoved, this, change);
        QVERIFY(movable.move(at(movable, "1"), 0, at(movable, "1"), 3));
        disconnect(connection);
        QCOMPARE(proxy.index(0, 0, root).data().toString(), QStringLiteral("20"));
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
                 isAnnounced ? (QStringList{QStringLiteral("about to change layout"),
                                            QStringLiteral("changed layout")})
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
        QCOMPARE(announced.names().mid(2),
                 (QStringList{QStringLiteral("about to reset"), QStringLiteral("reset")}));
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

    void moves_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<int>("row");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("announced");
        QTest::addColumn<QString>("text");
        const QString before = QStringLiteral("10 (100 101 102) 11 (110 111 112) 12 (120 121 122)");
        QTest::newRow("at the top") << QByteArray("1") << 0 << QByteArray("1") << 3 << "moved"
                                    << "11 (110 111 112) 12 (120 121 122) 10 (100 101 102)";
        QTest::newRow("further down") << QByteArray("10") << 2 << QByteArray("12") << 0 << "moved"
                                      << "10 (100 101) 11 (110 111 112) 12 (102 120 121 122)";
        QTest::newRow("up") << QByteArray("11") << 1 << QByteArray("1") << 3 << "moved"
                            << "10 (100 101 102) 11 (110 112) 12 (120 121 122) 111";
        QTest::newRow("out of the branch")
            << QByteArray("1") << 0 << QByteArray("0") << 0 << "reset"
            << "11 (110 111 112) 12 (120 121 122)";
        QTest::newRow("into the branch")
            << QByteArray("0") << 0 << QByteArray("1") << 1 << "reset"
            << "10 (100 101 102) 00 (000 001 002) 11 (110 111 112) 12 (120 121 122)";
        QTest::newRow("beside it") << QByteArray("0") << 0 << QByteArray("2") << 1 << "" << before;
        QTest::newRow("the root itself")
            << QByteArray() << 1 << QByteArray("0") << 0 << "" << before;
    }

    void moves()
    {
        QFETCH(QByteArray, from);
        QFETCH(int, row);
        QFETCH(QByteArray, to);
        QFETCH(int, place);
        QFETCH(QString, announced);
        QFETCH(QString, text);
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        const QAbstractItemModelTester tester(&proxy);
        const Signals told(proxy);
        QVERIFY(source.move(at(source, from), row, at(source, to), place));
        QCOMPARE(shown(proxy), text);
        const QStringList expected = {announced == QLatin1String("moved")
                                          ? QStringLiteral("about to move")
                                          : QStringLiteral("about to reset"),
                                      announced};
        QCOMPARE(told.names(), announced.isEmpty() ? QStringList() : expected);
    }

    void movesOfAnEarlierSourceAreNotHeard()
    {
        MovableTree earlier(3);
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&earlier);
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        QSignalSpy moved(&proxy, &QAbstractItemModel::rowsMoved);
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        QVERIFY(earlier.move(at(earlier, "1"), 0, at(earlier, "1"), 3));
        QVERIFY(earlier.move(at(earlier, "1"), 0, at(earlier, "0"), 0));
        earlier.tellOfColumns(at(earlier, "0"), at(earlier, "2"));
        QCOMPARE(moved.count() + reset.count(), 0);
        // Set twice, it is heard once.
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        reset.clear();
        QVERIFY(source.move(at(source, "1"), 0, at(source, "1"), 3));
        QVERIFY(source.move(at(source, "0"), 0, at(source, "1"), 0));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 1);
    }

    void movesOfColumns()
    {
        MovableTree source(3);
        Proxy proxy;
        proxy.setSourceModel(&source);
        proxy.setRootModelIndex(at(source, "1"));
        QSignalSpy moved(&proxy, &QAbstractItemModel::columnsMoved);
        QSignalSpy reset(&proxy, &QAbstractItemModel::modelReset);
        source.tellOfColumns(at(source, "10"), at(source, "12"));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 0);
        source.tellOfColumns(at(source, "0"), at(source, "2"));
        QCOMPARE(reset.count(), 0);
        source.tellOfColumns(at(source, "0"), at(source, "1"));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(reset.count(), 1);
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
        source->item(1)->appendRow(new QStandardItem(QStringLiteral("x")));
        QCoreApplication::processEvents();
        QCOMPARE(view.indexAbove(view.indexBelow(proxy.index(0, 0, root))),
                 proxy.index(0, 0, root));
        QCOMPARE(view.model()->rowCount(), 3);
    }
};

QTEST_MAIN(tst_ZvChildProxyModel)
#include "tst_ZvChildProxyModel.moc"
