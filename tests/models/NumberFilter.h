#pragma once

#include "support/FilterResult.h"

#include <QStringListModel>
#include <QTest>

#include <functional>

namespace zvtest {

/// Accepts what it is told to, and writes down what it is asked.
class Filter : public AbstractBackgroundListFilter
{
public:
    using AbstractBackgroundListFilter::AbstractBackgroundListFilter;

    /// As a subclass with new criteria does.
    void search()
    {
        isPending = true;
        Q_EMIT searchCriteriaChanged();
    }

    bool acceptsRow(int row) override
    {
        asked.append(row);
        // A copy, since it may delete this object.
        const std::function<bool(int row)> test = accepts;
        return !test || test(row);
    }

    void searchStarted() override
    {
        isPending = false;
        ++searches;
    }

    bool criteriaPending() override { return isPending; }

    std::function<bool(int row)> accepts;
    QList<int> asked;
    int searches = 0;
    bool isPending = false;
};

inline QStringListModel* numbers(int count, QObject* parent = nullptr)
{
    QStringList rows;
    for (int i = 0; i < count; ++i)
        rows.append(QString::number(i));
    return new QStringListModel(rows, parent);
}

inline QList<int> upTo(int count)
{
    QList<int> rows;
    for (int i = 0; i < count; ++i)
        rows.append(i);
    return rows;
}

/// Runs when the pass next handles events.
template <typename Work>
void post(QObject* context, Work work)
{
    QMetaObject::invokeMethod(context, work, Qt::QueuedConnection);
}

} // namespace zvtest
