#pragma once

#include <zvutil/zvutil_export.h>

#include <QAbstractItemModel>
#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QPersistentModelIndex>
#include <QStack>
#include <QVariant>

/// Exercises an item model while it is being developed: once when it is attached, and again at each
/// change that the model announces.
/// @code{.cpp}
/// /// \p model is tested for as long as it lives.
/// void keepTesting(QAbstractItemModel* model)
/// {
///     new ModelTest(model, model);
/// }
/// @endcode
/// It calls the model's operations with valid, invalid and out-of-range arguments and walks the
/// tree, also into what can be fetched yet. It compares no result and reports nothing: a faulty
/// model shows by failing under the calls, best under a debugger or a sanitizer. A model that
/// behaves isn't changed by it, but for what it fetches.
///
/// A run takes time with the number of cells. GUI thread, or that of the model.
class ZVUTIL_EXPORT ModelTest : public QObject
{
    Q_OBJECT

public:
    /// Runs all tests once. \p model isn't owned and must not be null; it may go first.
    ModelTest(QAbstractItemModel* model, QObject* parent);
    ~ModelTest() override;

private Q_SLOTS:
    void nonDestructiveBasicTest();
    void rowCount();
    void columnCount();
    void hasIndex();
    void index();
    void parent();
    void data();

protected Q_SLOTS:
    /// Runs the seven tests above, unless a test is just fetching rows.
    void runAllTests();
    void layoutAboutToBeChanged();
    void layoutChanged();
    void rowsAboutToBeInserted(QModelIndex parent, int start, int end);
    void rowsInserted(QModelIndex parent, int start, int end);
    void rowsAboutToBeRemoved(QModelIndex parent, int start, int end);
    void rowsRemoved(QModelIndex parent, int start, int end);

private:
    /// An announced change, and what the rows on either side of it show.
    struct Changing
    {
        QModelIndex parent;
        int oldSize;
        QVariant last;
        QVariant next;
    };

    void checkChildren(const QModelIndex& parent, int currentDepth);

    QAbstractItemModel* m_model;
    QStack<Changing> m_insert;
    QStack<Changing> m_remove;
    bool m_fetchingMore = false;
    QList<QPersistentModelIndex> m_changing;
};
