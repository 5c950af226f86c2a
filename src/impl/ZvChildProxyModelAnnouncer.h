#pragma once

#include <zvutil/ZvChildProxyModel.h>

#include <QObject>
#include <QPersistentModelIndex>

#include <utility>
#include <vector>

/// Announces the source's changes as changes of the branch: changes within it as they are, a move
/// with one end in it and the removal of the root as a reset, and no others. Owned by its model.
class ZVUTIL_NO_EXPORT ZvChildProxyModel::Announcer : public QObject
{
public:
    Announcer(ZvChildProxyModel& proxy, const QAbstractItemModel& source);
    ~Announcer() override;

    /// The announcer of \p proxy, or null.
    static Announcer* of(const ZvChildProxyModel& proxy);

    /// Disconnects from the source and schedules deletion, before another source is set.
    void retire();

private:
    enum class Change { Hidden, Announced, Reset };
    using Indexes = QList<QPersistentModelIndex>;

    template <typename Begun, typename Ended>
    void followInsertions(const QAbstractItemModel& source, Begun begun,
                          void (QAbstractItemModel::*announce)(const QModelIndex&, int, int),
                          Ended ended, void (QAbstractItemModel::*announceEnd)());
    template <typename Begun, typename Ended>
    void followRemovals(const QAbstractItemModel& source, int (QModelIndex::*coordinate)() const,
                        Begun begun,
                        void (QAbstractItemModel::*announce)(const QModelIndex&, int, int),
                        Ended ended, void (QAbstractItemModel::*announceEnd)());
    template <typename Begun, typename Ended>
    void followMoves(const QAbstractItemModel& source, Begun begun,
                     bool (QAbstractItemModel::*announce)(const QModelIndex&, int, int,
                                                          const QModelIndex&, int),
                     Ended ended, void (QAbstractItemModel::*announceEnd)());
    void followOtherChanges(const QAbstractItemModel& source);

    void begin(Change change);
    void end(void (QAbstractItemModel::*announce)());
    void tellData(const QModelIndex& first, const QModelIndex& last, const QVector<int>& roles);
    void beginLayout(const Indexes& parents, QAbstractItemModel::LayoutChangeHint hint);
    void endLayout(const Indexes& parents, QAbstractItemModel::LayoutChangeHint hint);

    bool hasRoot() const;
    bool isInBranch(const QModelIndex& parent) const;
    bool isRootAmong(const QModelIndex& parent, int first, int last,
                     int (QModelIndex::*coordinate)() const) const;
    bool touchesLayout(const Indexes& parents) const;
    Indexes shown(const Indexes& parents) const;

    ZvChildProxyModel& m_proxy;
    /// The source's changes that have begun and not yet ended, the innermost last.
    std::vector<Change> m_changes;
    /// While the source changes its layout: the model's persistent indexes and their source
    /// indexes.
    std::vector<std::pair<QModelIndex, QPersistentModelIndex>> m_indexes;
    bool m_isLayoutTold = false;
    bool m_hadRoot = false;
};
