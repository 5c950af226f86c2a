#pragma once

#include "impl/models/AbstractBackgroundListFilter.h"

#include <QList>
#include <QObject>
#include <QTest>
#include <QTimer>

namespace zvtest {

/// The rows that a filter has reported since its last reset, as a user of it would keep them.
class FilterResult
{
public:
    explicit FilterResult(AbstractBackgroundListFilter& filter)
        : m_filter(&filter)
    {
        using Filter = AbstractBackgroundListFilter;
        QObject::connect(&filter, &Filter::reset, &m_context, [this] {
            rows.clear();
            batches.clear();
            ++resets;
        });
        QObject::connect(&filter, &Filter::accepted, &m_context,
                         [this](const Filter::ModelIndexVectorPtr& indexes) {
                             batches.append(static_cast<int>(indexes->size()));
                             for (const QModelIndex& index : *indexes)
                                 rows.append(index.row());
                         });
        QObject::connect(&filter, &Filter::progress, &m_context, [this](int value, int maximum) {
            progress.append({value, maximum});
        });
    }

    QTimer& timer() const { return *m_filter->findChild<QTimer*>(); }

    /// Waits until all has been delivered.
    bool settles() const
    {
        return QTest::qWaitFor([this] { return !timer().isActive(); }, 240'000);
    }

    QList<int> rows;
    QList<int> batches;
    QList<QPair<int, int>> progress;
    int resets = 0;

private:
    AbstractBackgroundListFilter* m_filter;
    QObject m_context;
};

} // namespace zvtest
