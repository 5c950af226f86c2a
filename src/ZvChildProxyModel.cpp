#include <zvutil/ZvChildProxyModel.h>

#include "impl/ZvChildProxyModelAnnouncer.h"

#include <QMetaMethod>

namespace {

/// Disconnects the base class's slots, which would announce changes beside the branch as changes at
/// its top. Connections of a subclass stay.
void disconnectBaseClass(const QAbstractItemModel& source, const ZvChildProxyModel& proxy)
{
    const QMetaObject& base = QIdentityProxyModel::staticMetaObject;
    for (int i = base.methodOffset(); i < base.methodCount(); ++i)
        QObject::disconnect(&source, QMetaMethod(), &proxy, base.method(i));
}

} // namespace

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
    // By contract: index() is invalid for the rows of a model without a root, although rowCount()
    // counts them.
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
    if (Announcer* const announcer = Announcer::of(*this))
        announcer->retire();
    m_root = QModelIndex();
    QIdentityProxyModel::setSourceModel(model);
    if (!sourceModel())
        return;
    disconnectBaseClass(*model, *this);
    new Announcer(*this, *model);
}

QModelIndex ZvChildProxyModel::mapFromSource(const QModelIndex& source) const
{
    if (!source.isValid() || m_root == source || !isDescendedFromRoot(source))
        return {};
    return QIdentityProxyModel::mapFromSource(source);
}

bool ZvChildProxyModel::isDescendedFromRoot(const QModelIndex& index) const
{
    // Iterate instead of recursing: a model may be deeper than the stack.
    for (QModelIndex i = index; i.isValid(); i = i.parent()) {
        if (m_root == i)
            return true;
    }
    return false;
}
