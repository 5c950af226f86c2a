#pragma once

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QAbstractItemModel>

#include <algorithm>

/// Counts the rows of a model that contain a text, a thousand at a time.
class RowCount : public ZvAbstractIterativeProcess
{
    Q_OBJECT

public:
    RowCount(const QAbstractItemModel& model, const QString& text)
        : m_model(model)
        , m_text(text)
    {
    }

    int count() const { return m_count; }

    bool hasMoreWork() override { return m_next < m_model.rowCount(); }

    void processStep() override
    {
        // Rows may have been removed since the step before.
        const int end = std::min(m_next + 1'000, m_model.rowCount());
        for (; m_next < end; ++m_next) {
            if (m_model.index(m_next, 0).data().toString().contains(m_text))
                ++m_count;
        }
    }

private:
    const QAbstractItemModel& m_model;
    QString m_text;
    int m_next = 0;
    int m_count = 0;
};
