#include <zvutil/ZvChildProxyModel.h>

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
    m_root = QModelIndex();
    QIdentityProxyModel::setSourceModel(model);
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
