#pragma once

#include "files/NamePattern.h"

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QAbstractItemModel>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

namespace workbench {

/// Searches the rows of a list of paths, a few milliseconds at a time, for file names that match a
/// pattern. Rows that are appended meanwhile are searched, too; a new pattern and any other change
/// of the list start the search again.
///
/// A row that equals the one before it is skipped, since the list model may list the last file of a
/// directory twice.
///
/// Matching rows are reported a few times a second, the first ones at once. Only their numbers are
/// stored, until they have been reported.
class RowFilter : public ZvAbstractIterativeProcess
{
    Q_OBJECT

public:
    /// Deletes a filter: at once, or, if it is running, after its current step.
    struct Deleter
    {
        void operator()(RowFilter* filter) const;
    };
    using Owner = std::unique_ptr<RowFilter, Deleter>;

    /// Creates a filter, which has no list yet.
    static Owner make();

    /// Sets the list to search, which the caller owns and may be null.
    void setSource(QAbstractItemModel* source);
    void setPattern(const QString& text);
    /// Stops the search where it is, until the pattern changes, or the list other than by rows at
    /// its end. Rows found so far are reported.
    void pause();
    bool isPaused() const;

    /// Returns whether all present rows have been searched and reported.
    bool isDone() const;
    /// Returns how many rows have been searched.
    int lookedAt() const;
    /// Returns how many of the searched rows weren't skipped as repetitions.
    int different() const;

    bool hasMoreWork() override;
    void processStep() override;

Q_SIGNALS:
    /// Emitted when a search begins. Rows that were reported before are void.
    void begun();
    /// Emitted with more rows that match, in ascending order.
    void found(const std::vector<int>& rows);
    /// Emitted a few times a second when `isDone` or the numbers have changed.
    void progress();

protected:
    void reportStatus() override;

private:
    RowFilter();
    ~RowFilter() override;

    int rowCount() const;
    void begin();
    void appended(int first);
    void examine(int row);
    void deliver();
    void deliverSoon();

    QPointer<QAbstractItemModel> m_source;
    NamePattern m_pattern;
    QString m_previous;
    std::vector<int> m_pending;
    QTimer m_delivery;
    int m_next = 0;
    int m_different = 0;
    int m_delivered = 0;
    bool m_isPaused = false;
};

} // namespace workbench
