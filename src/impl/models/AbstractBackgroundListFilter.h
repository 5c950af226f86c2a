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

/// Goes through the rows of a model and reports those that pass a test, on the thread of this object
/// and without blocking it: events are handled behind each row, and a timer delivers what was
/// accepted in batches. New criteria or a change of the source abandon the pass and begin another.
///
/// Whatever an event calls may run within a pass, also the end of the source or of this object.
///
/// A change of the source's layout, as by sorting, is no change here: no pass begins, and accepted
/// rows that wait for the timer are delivered by their old places, in which there may be other rows
/// by then. Who sorts a source makes the filter begin anew.
class AbstractBackgroundListFilter : public QObject
{
    Q_OBJECT

public:
    using ModelIndexVectorPtr = std::shared_ptr<std::vector<QModelIndex>>;

    enum SourceState {
        /// The pass, or the result of the last one, stands.
        source_clean = 0,
        /// The source has announced a change. Nothing is done until it ends.
        source_changing = 1,
        /// A new pass is due.
        source_changed = 2,
    };

    /// \p interval is the time between two deliveries, in milliseconds.
    AbstractBackgroundListFilter(int interval, QObject* parent);
    explicit AbstractBackgroundListFilter(QObject* parent);
    ~AbstractBackgroundListFilter() override;

    /// Begins a pass over \p model, which isn't owned. When it goes, the filter is left without one.
    void setSourceModel(QAbstractItemModel* model);
    QAbstractItemModel* sourceModel() const;

    /// A pass that is paused ends where it is. Resuming doesn't go on with it: that takes new
    /// criteria or a change of the source.
    void setPaused(bool paused);
    void pause();
    bool isPaused() const;

    bool isSourceDirty() const;
    int sourceState() const;

    /// Begins a pass if one is due and none is under way.
    void recheck();

    virtual bool acceptsRow(int row) = 0;
    /// A pass begins: new criteria are taken over.
    virtual void searchStarted() = 0;
    /// Whether new criteria wait to be taken over.
    virtual bool criteriaPending() = 0;

Q_SIGNALS:
    /// Up to 1000 more rows, in their order.
    void accepted(ModelIndexVectorPtr sourceIndexes);
    /// At each delivery: how many rows have been looked at, and how many there are.
    void progress(int value, int maximum);
    /// A pass begins: what was accepted before is void.
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
