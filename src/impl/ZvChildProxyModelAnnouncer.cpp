#include "impl/ZvChildProxyModelAnnouncer.h"

#include <algorithm>

namespace {

using Model = QAbstractItemModel;

QString announcerName()
{
    return QStringLiteral("announcer of the source's changes");
}

} // namespace

ZvChildProxyModel::Announcer::Announcer(ZvChildProxyModel& proxy, const Model& source)
    : QObject(&proxy)
    , m_proxy(proxy)
{
    using Proxy = ZvChildProxyModel;
    setObjectName(announcerName());
    followInsertions(source, &Model::rowsAboutToBeInserted, &Proxy::beginInsertRows,
                     &Model::rowsInserted, &Proxy::endInsertRows);
    followInsertions(source, &Model::columnsAboutToBeInserted, &Proxy::beginInsertColumns,
                     &Model::columnsInserted, &Proxy::endInsertColumns);
    followRemovals(source, &QModelIndex::row, &Model::rowsAboutToBeRemoved, &Proxy::beginRemoveRows,
                   &Model::rowsRemoved, &Proxy::endRemoveRows);
    followRemovals(source, &QModelIndex::column, &Model::columnsAboutToBeRemoved,
                   &Proxy::beginRemoveColumns, &Model::columnsRemoved, &Proxy::endRemoveColumns);
    followMoves(source, &Model::rowsAboutToBeMoved, &Proxy::beginMoveRows, &Model::rowsMoved,
                &Proxy::endMoveRows);
    followMoves(source, &Model::columnsAboutToBeMoved, &Proxy::beginMoveColumns,
                &Model::columnsMoved, &Proxy::endMoveColumns);
    followOtherChanges(source);
}

ZvChildProxyModel::Announcer::~Announcer() = default;

ZvChildProxyModel::Announcer* ZvChildProxyModel::Announcer::of(const ZvChildProxyModel& proxy)
{
    return static_cast<Announcer*>(
        proxy.findChild<QObject*>(announcerName(), Qt::FindDirectChildrenOnly));
}

void ZvChildProxyModel::Announcer::retire()
{
    // Rename and defer the deletion: a slot of a change that this object announces may have set the
    // other source.
    setObjectName(QString());
    if (const Model* const source = m_proxy.sourceModel())
        source->disconnect(this);
    deleteLater();
}

template <typename Begun, typename Ended>
void ZvChildProxyModel::Announcer::followInsertions(const Model& source, Begun begun,
                                                    void (Model::*announce)(const QModelIndex&, int,
                                                                            int),
                                                    Ended ended, void (Model::*announceEnd)())
{
    connect(&source, begun, this, [this, announce](const QModelIndex& parent, int first, int last) {
        begin(isInBranch(parent) ? Change::Announced : Change::Hidden);
        if (m_changes.back() == Change::Announced)
            (m_proxy.*announce)(m_proxy.mapFromSource(parent), first, last);
    });
    connect(&source, ended, this, [this, announceEnd] { end(announceEnd); });
}

template <typename Begun, typename Ended>
void ZvChildProxyModel::Announcer::followRemovals(
    const Model& source, int (QModelIndex::*coordinate)() const, Begun begun,
    void (Model::*announce)(const QModelIndex&, int, int), Ended ended,
    void (Model::*announceEnd)())
{
    connect(&source, begun, this,
            [this, coordinate, announce](const QModelIndex& parent, int first, int last) {
                if (isRootAmong(parent, first, last, coordinate))
                    begin(Change::Reset);
                else
                    begin(isInBranch(parent) ? Change::Announced : Change::Hidden);
                if (m_changes.back() == Change::Announced)
                    (m_proxy.*announce)(m_proxy.mapFromSource(parent), first, last);
            });
    connect(&source, ended, this, [this, announceEnd] { end(announceEnd); });
}

template <typename Begun, typename Ended>
void ZvChildProxyModel::Announcer::followMoves(const Model& source, Begun begun,
                                               bool (Model::*announce)(const QModelIndex&, int, int,
                                                                       const QModelIndex&, int),
                                               Ended ended, void (Model::*announceEnd)())
{
    connect(&source, begun, this,
            [this, announce](const QModelIndex& from, int first, int last, const QModelIndex& to,
                             int destination) {
                const bool isFromHere = isInBranch(from);
                if (!isFromHere && !isInBranch(to))
                    begin(Change::Hidden);
                else if (isFromHere && isInBranch(to)
                         && (m_proxy.*announce)(m_proxy.mapFromSource(from), first, last,
                                                m_proxy.mapFromSource(to), destination))
                    begin(Change::Announced);
                else
                    begin(Change::Reset);
            });
    connect(&source, ended, this, [this, announceEnd] { end(announceEnd); });
}

void ZvChildProxyModel::Announcer::followOtherChanges(const Model& source)
{
    connect(&source, &Model::dataChanged, this, &Announcer::tellData);
    connect(&source, &Model::headerDataChanged, &m_proxy, &Model::headerDataChanged);
    connect(&source, &Model::modelAboutToBeReset, this, [this] { m_proxy.beginResetModel(); });
    connect(&source, &Model::modelReset, this, [this] { m_proxy.endResetModel(); });
    connect(&source, &Model::layoutAboutToBeChanged, this, &Announcer::beginLayout);
    connect(&source, &Model::layoutChanged, this, &Announcer::endLayout);
}

void ZvChildProxyModel::Announcer::begin(Change change)
{
    m_changes.push_back(change);
    if (change == Change::Reset)
        m_proxy.beginResetModel();
}

void ZvChildProxyModel::Announcer::end(void (Model::*announce)())
{
    // Reset for a change that began before this object was connected: its extent is unknown.
    if (m_changes.empty())
        begin(Change::Reset);
    const Change change = m_changes.back();
    m_changes.pop_back();
    if (change == Change::Announced)
        (m_proxy.*announce)();
    else if (change == Change::Reset)
        m_proxy.endResetModel();
}

void ZvChildProxyModel::Announcer::tellData(const QModelIndex& first, const QModelIndex& last,
                                            const QVector<int>& roles)
{
    const QModelIndex firstHere = m_proxy.mapFromSource(first);
    const QModelIndex lastHere = m_proxy.mapFromSource(last);
    if (firstHere.isValid() && lastHere.isValid())
        Q_EMIT m_proxy.dataChanged(firstHere, lastHere, roles);
}

void ZvChildProxyModel::Announcer::beginLayout(const Indexes& parents, Model::LayoutChangeHint hint)
{
    m_hadRoot = hasRoot();
    m_isLayoutTold = touchesLayout(parents);
    if (!m_isLayoutTold)
        return;
    Q_EMIT m_proxy.layoutAboutToBeChanged(shown(parents), hint);
    const QModelIndexList indexes = m_proxy.persistentIndexList();
    for (const QModelIndex& index : indexes)
        m_indexes.emplace_back(index, m_proxy.mapToSource(index));
}

void ZvChildProxyModel::Announcer::endLayout(const Indexes& parents, Model::LayoutChangeHint hint)
{
    if (m_isLayoutTold) {
        for (const auto& [index, source] : m_indexes)
            m_proxy.changePersistentIndex(index, m_proxy.mapFromSource(source));
        m_indexes.clear();
        Q_EMIT m_proxy.layoutChanged(shown(parents), hint);
    }
    if (m_hadRoot && !hasRoot()) {
        m_proxy.beginResetModel();
        m_proxy.endResetModel();
    }
}

bool ZvChildProxyModel::Announcer::hasRoot() const
{
    return m_proxy.m_root.isValid();
}

/// Whether rows directly below \p parent, an index of the source, belong to the branch.
bool ZvChildProxyModel::Announcer::isInBranch(const QModelIndex& parent) const
{
    return hasRoot() ? m_proxy.isDescendedFromRoot(parent) : !parent.isValid();
}

/// Whether the root is in one of these rows or columns of \p parent, or below them.
bool ZvChildProxyModel::Announcer::isRootAmong(const QModelIndex& parent, int first, int last,
                                               int (QModelIndex::*coordinate)() const) const
{
    for (QModelIndex i = m_proxy.m_root; i.isValid(); i = i.parent()) {
        if (i.parent() == parent)
            return (i.*coordinate)() >= first && (i.*coordinate)() <= last;
    }
    return false;
}

/// Whether to announce a change of the source's layout. A change above the root counts too, since
/// the source may find the rows below the root in another way afterwards.
bool ZvChildProxyModel::Announcer::touchesLayout(const Indexes& parents) const
{
    const auto isAboveRoot = [this](const QModelIndex& parent) {
        QModelIndex i = m_proxy.m_root;
        while (i.isValid() && i != parent)
            i = i.parent();
        return i == parent;
    };
    return parents.isEmpty()
        || std::any_of(parents.begin(), parents.end(), [&](const QPersistentModelIndex& parent) {
               return isInBranch(parent) || isAboveRoot(parent);
           });
}

/// The parents as indexes of the branch; an empty list means all of it.
ZvChildProxyModel::Announcer::Indexes
ZvChildProxyModel::Announcer::shown(const Indexes& parents) const
{
    Indexes result;
    for (const QPersistentModelIndex& parent : parents) {
        // A parent above the root affects the whole branch.
        if (!isInBranch(parent))
            return {};
        result.append(m_proxy.mapFromSource(parent));
    }
    return result;
}
