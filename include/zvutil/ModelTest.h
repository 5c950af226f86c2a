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
/// The test calls the model's operations with valid, invalid and out-of-range arguments, walks the
/// tree and fetches what can be fetched. No result is compared and nothing is reported: a faulty
/// model shows by failing under the calls, best under a debugger or a sanitizer. A correct
/// model isn't changed, except for the rows that it fetches.
///
/// A run takes time linear in the number of cells. Use it on the model's thread.
/// @since 0.1 @ingroup models
class ZVUTIL_EXPORT ModelTest : public QObject
{
    Q_OBJECT

public:
    /// Runs all tests once.
    /// @param model isn't owned and may be destroyed first; must not be null
    /// @param parent owns the test; may be null
    ModelTest(QAbstractItemModel* model, QObject* parent);
    /// Ends the test; the model stays.
    ~ModelTest() override;

private Q_SLOTS:
    /// Calls the operations that concern no cell, with invalid indexes and arguments out of range.
    void nonDestructiveBasicTest();
    /// Asks for the number of rows below the first cell and below its first child.
    void rowCount();
    /// Asks for the first child of the first cell.
    void columnCount();
    /// Asks for the numbers of rows and columns at the top.
    void hasIndex();
    /// Asks for an index out of range, and three times for the first one.
    void index();
    /// Asks for parents, and walks the tree.
    void parent();
    /// Asks for the data of the first cell in each role that has a fixed type.
    void data();

protected Q_SLOTS:
    /// Runs the seven tests above, unless one of them is fetching rows just now.
    void runAllTests();
    /// Keeps the indexes of the first 100 rows at the top.
    void layoutAboutToBeChanged();
    /// Asks for the kept indexes again, where they are by now, and drops them.
    void layoutChanged();
    /// Asks for the number of rows of \p parent and the data on either side of row \p start.
    /// @param parent as the model announces it
    /// @param start where the first new row will be
    /// @param end isn't looked at
    void rowsAboutToBeInserted(QModelIndex parent, int start, int end);
    /// Ends what `rowsAboutToBeInserted` began.
    /// @param parent isn't looked at
    /// @param start isn't looked at
    /// @param end isn't looked at
    void rowsInserted(QModelIndex parent, int start, int end);
    /// Asks for the number of rows of \p parent and the data on either side of the rows.
    /// @param parent as the model announces it
    /// @param start the first row to go
    /// @param end the last row to go
    void rowsAboutToBeRemoved(QModelIndex parent, int start, int end);
    /// Ends what `rowsAboutToBeRemoved` began.
    /// @param parent isn't looked at
    /// @param start isn't looked at
    /// @param end isn't looked at
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
