#pragma once

#include <zvutil/ZvChildProxyModel.h>

#include <QStandardItemModel>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace zvtest {

inline const QModelIndex root;

class Proxy : public ZvChildProxyModel
{
public:
    using ZvChildProxyModel::isDescendedFromRoot;
    using ZvChildProxyModel::ZvChildProxyModel;
};

/// Rows 0 to 2, each with rows 0 to 2 of two columns, down to the given depth. The text of a row is
/// its path: "12" is the third child of the second row.
inline void fill(QStandardItem& parent, int depth)
{
    for (int row = 0; depth > 0 && row < 3; ++row) {
        auto* const item = new QStandardItem(parent.text() + QString::number(row));
        auto* const second = new QStandardItem(item->text() + QLatin1Char('b'));
        parent.appendRow({item, second});
        fill(*item, depth - 1);
    }
}

inline std::unique_ptr<QStandardItemModel> tree(int depth = 4)
{
    auto model = std::make_unique<QStandardItemModel>();
    fill(*model->invisibleRootItem(), depth);
    return model;
}

inline QModelIndex at(const QAbstractItemModel& model, const char* path)
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
        child->text = QString("n%1").arg(++m_inserted);
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

    /// Becomes what it was at first, but for the names of rows that are inserted.
    void reset(int depth)
    {
        beginResetModel();
        m_top.children.clear();
        fill(m_top, depth);
        endResetModel();
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
            const QString above = parent.isValid() ? parent.data().toString() : QString("-");
            names->append(QString("%1 %2 %3 %4")
                              .arg(QString::fromUtf8(name), above, QString::number(first),
                                   QString::number(last)));
        };
        QObject::connect(&model, signal, &m_context, append);
    }

    QObject m_context;
    std::shared_ptr<QStringList> m_names = std::make_shared<QStringList>();
};

/// All that a model shows, as a view would find it.
inline QString shown(const QAbstractItemModel& model, const QModelIndex& parent = {})
{
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column)
            text += model.index(row, column, parent).data().toString() + QLatin1Char(' ');
        const QString below = shown(model, model.index(row, 0, parent));
        if (!below.isEmpty())
            text += QLatin1Char('(') + below + ") ";
    }
    return text.trimmed();
}

} // namespace zvtest
