#include <zvutil/ZvChildProxyModel.h>

#include <memory>

ZvChildProxyModel::ZvChildProxyModel(QObject* parent)
    : QIdentityProxyModel(parent)
{
}

ZvChildProxyModel::~ZvChildProxyModel() = default;

void ZvChildProxyModel::setRootModelIndex(const QModelIndex& index)
{
    beginResetModel();
    m_root = index;
    endResetModel();
}

QModelIndex ZvChildProxyModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid())
        return QIdentityProxyModel::index(row, column, parent);
    if (!sourceModel())
        return {};
    // Wanted: without a root there are rows but no indexes for them.
    return mapFromSource(sourceModel()->index(row, column, m_root));
}

int ZvChildProxyModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return QIdentityProxyModel::rowCount(parent);
    return sourceModel() ? sourceModel()->rowCount(m_root) : 0;
}

int ZvChildProxyModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return QIdentityProxyModel::columnCount(parent);
    return sourceModel() ? sourceModel()->columnCount(m_root) : 0;
}

void ZvChildProxyModel::setSourceModel(QAbstractItemModel* model)
{
    using Model = QAbstractItemModel;
    const auto leaveMoves = [this](const Model* source) {
        disconnect(source, &Model::rowsAboutToBeMoved, this, nullptr);
        disconnect(source, &Model::rowsMoved, this, nullptr);
        disconnect(source, &Model::columnsAboutToBeMoved, this, nullptr);
        disconnect(source, &Model::columnsMoved, this, nullptr);
    };
    if (sourceModel())
        leaveMoves(sourceModel());
    m_root = QModelIndex();
    QIdentityProxyModel::setSourceModel(model);
    if (!sourceModel())
        return;
    // The base class would tell of moves outside of the branch as well, and end those that it wasn't
    // allowed to begin.
    const auto isMove = std::make_shared<bool>(false);
    const auto beginMove = [this, isMove](auto begin, const QModelIndex& from, int first, int last,
                                          const QModelIndex& to, int place) {
        *isMove = isDescendedFromRoot(from) && isDescendedFromRoot(to)
            && (this->*begin)(mapFromSource(from), first, last, mapFromSource(to), place);
        if (!*isMove)
            beginResetModel();
    };
    leaveMoves(model);
    connect(model, &Model::rowsAboutToBeMoved, this,
            [beginMove](const QModelIndex& from, int first, int last, const QModelIndex& to,
                        int place) {
                beginMove(&ZvChildProxyModel::beginMoveRows, from, first, last, to, place);
            });
    connect(model, &Model::columnsAboutToBeMoved, this,
            [beginMove](const QModelIndex& from, int first, int last, const QModelIndex& to,
                        int place) {
                beginMove(&ZvChildProxyModel::beginMoveColumns, from, first, last, to, place);
            });
    connect(model, &Model::rowsMoved, this,
            [this, isMove] { *isMove ? endMoveRows() : endResetModel(); });
    connect(model, &Model::columnsMoved, this,
            [this, isMove] { *isMove ? endMoveColumns() : endResetModel(); });
}

QModelIndex ZvChildProxyModel::mapFromSource(const QModelIndex& source) const
{
    if (!source.isValid() || m_root == source || !isDescendedFromRoot(source))
        return {};
    return QIdentityProxyModel::mapFromSource(source);
}

bool ZvChildProxyModel::isDescendedFromRoot(const QModelIndex& index) const
{
    // A loop, since a model may be deeper than the stack.
    for (QModelIndex i = index; i.isValid(); i = i.parent()) {
        if (m_root == i)
            return true;
    }
    return false;
}
