#pragma once

#include <QAbstractItemModel>
#include <QMetaType>
#include <QModelIndex>
#include <QObject>
#include <QPointer>

#include <deque>
#include <memory>
#include <vector>

class QTimer;

/// Tests the rows of a model and reports those that pass, on the thread of this object and without
/// blocking it: events are handled after each row, and a timer delivers the accepted rows in
/// batches. New criteria or a change of the source abandon the pass and begin another.
///
/// Any event may run within a pass, including one that destroys the source or this object.
///
/// A change of the source's layout, as by sorting, begins no pass: accepted rows that wait for the
/// timer are delivered by their old places, where other rows may be by then. Code that sorts a
/// source has to begin a new pass itself.
class AbstractBackgroundListFilter : public QObject
{
    Q_OBJECT

public:
    using ModelIndexVectorPtr = std::shared_ptr<std::vector<QModelIndex>>;

    enum SourceState {
        /// The pass, or the result of the last one, is valid.
        source_clean = 0,
        /// The source has announced a change that hasn't ended; passes wait.
        source_changing = 1,
        /// A new pass is due.
        source_changed = 2,
    };

    /// \p interval is the time between two deliveries, in milliseconds.
    AbstractBackgroundListFilter(int interval, QObject* parent);
    explicit AbstractBackgroundListFilter(QObject* parent);
    ~AbstractBackgroundListFilter() override;

    /// Begins a pass over \p model, which isn't owned and may be null. Its destruction leaves the
    /// filter without a source.
    void setSourceModel(QAbstractItemModel* model);
    QAbstractItemModel* sourceModel() const;

    /// Pausing ends the pass. Resuming doesn't continue it: only new criteria or a change of the
    /// source begin another.
    void setPaused(bool paused);
    void pause();
    bool isPaused() const;

    bool isSourceDirty() const;
    int sourceState() const;

    /// Begins a pass if one is due and none is under way.
    void recheck();

    virtual bool acceptsRow(int row) = 0;
    /// Called when a pass begins, to apply new criteria.
    virtual void searchStarted() = 0;
    /// Whether new criteria have been set since the last `searchStarted`.
    virtual bool criteriaPending() = 0;

Q_SIGNALS:
    /// The next accepted rows, at most 1000, in their order.
    void accepted(ModelIndexVectorPtr sourceIndexes);
    /// Emitted at each delivery: \p value of \p maximum rows have been tested.
    void progress(int value, int maximum);
    /// Emitted when a pass begins: earlier accepted rows are void.
    void reset();
    void searchCriteriaChanged();

private:
    void connectSource();
    void sourceIsChanging();
    void sourceHasChanged();
    void beginDelivery();
    void deliverAccepted();

    void invokePass(Qt::ConnectionType type);
    void runGuarded();
    void runPass();
    bool examineRows();
    bool mayGoOn();

    std::deque<QModelIndex> m_pending;
    QPointer<QAbstractItemModel> m_source;
    bool m_inPass = false;
    bool m_enabled = true;
    int m_examined = 0;
    QTimer* m_timer;
    int m_sourceState = source_changed;
};

Q_DECLARE_METATYPE(AbstractBackgroundListFilter::ModelIndexVectorPtr)
