#pragma once

#include <zvutil/ZvChildProxyModel.h>

#include <QObject>
#include <QPersistentModelIndex>

#include <utility>
#include <vector>

/// Announces the source's changes as those of the branch: what happens within it as it is, a move that
/// has one end in it and the end of the root as a reset, and nothing else. It is a child of its
/// model.
class ZVUTIL_NO_EXPORT ZvChildProxyModel::Announcer : public QObject
{
public:
    Announcer(ZvChildProxyModel& proxy, const QAbstractItemModel& source);
    ~Announcer() override;

    /// The one of \p proxy, or null.
    static Announcer* of(const ZvChildProxyModel& proxy);

    /// Ends this before another source is set.
    void retire();

private:
    enum class Change { Hidden, Announced, Reset };
    using Indexes = QList<QPersistentModelIndex>;

    template <typename Begun, typename Ended>
    void followInsertions(const QAbstractItemModel& source, Begun begun,
                          void (QAbstractItemModel::*announce)(const QModelIndex&, int, int),
                          Ended ended, void (QAbstractItemModel::*announceEnd)());
    template <typename Begun, typename Ended>
    void followRemovals(const QAbstractItemModel& source, int (QModelIndex::*place)() const,
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
                     int (QModelIndex::*place)() const) const;
    bool touchesLayout(const Indexes& parents) const;
    Indexes shown(const Indexes& parents) const;

    ZvChildProxyModel& m_proxy;
    /// The source's changes that have begun and not yet ended.
    std::vector<Change> m_changes;
    /// The model's persistent indexes and what they stand for, while the source changes its layout.
    std::vector<std::pair<QModelIndex, QPersistentModelIndex>> m_indexes;
    bool m_isLayoutTold = false;
    bool m_hadRoot = false;
};
