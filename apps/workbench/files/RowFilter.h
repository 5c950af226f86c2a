#pragma once

#include "files/NamePattern.h"

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QAbstractItemModel>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

namespace workbench {

/// Goes over the rows of a list of paths, a few milliseconds at a time, and reports those whose file
/// name matches a pattern. Rows that are appended meanwhile are looked at, too; a new pattern and any
/// other change of the list have it begin again.
///
/// A row that equals the one before it is passed over: the list model may list the last file of
/// a directory twice.
///
/// Hits are reported a few times a second, the first at once. It keeps nothing of the rows but their
/// numbers until they have been reported.
class RowFilter : public ZvAbstractIterativeProcess
{
    Q_OBJECT

public:
    /// Ends a filter: at once, or, if it runs, as soon as it has come out of its step.
    struct Ender
    {
        void operator()(RowFilter* filter) const;
    };
    using Owner = std::unique_ptr<RowFilter, Ender>;

    /// On rows that nobody has told yet.
    static Owner make();

    /// The rows to look at, of which this doesn't become the owner; it may be null.
    void setSource(QAbstractItemModel* source);
    void setPattern(const QString& text);
    /// Ends it where it is, until the pattern or the list changes.
    void pause();
    bool isPaused() const;

    /// Whether all rows that there are have been looked at and reported.
    bool isDone() const;
    /// How many rows have been looked at.
    int lookedAt() const;
    /// How many of these weren't passed over as repetitions.
    int different() const;

    bool hasMoreWork() override;
    void processStep() override;

Q_SIGNALS:
    /// What has been reported before is void.
    void begun();
    /// More rows that match, in their order.
    void found(const std::vector<int>& rows);
    /// `isDone` or the numbers have changed. A few times a second.
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
