#pragma once

#include <QSortFilterProxyModel>
#include <QString>

namespace workbench {

/// The lines of the log from a level upwards whose category or text contains a text, in any case.
class LogFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setLeastLevel(int level);
    void setText(const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    int m_leastLevel = 0;
    QString m_text;
};

} // namespace workbench
