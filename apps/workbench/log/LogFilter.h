#pragma once

#include <QSortFilterProxyModel>
#include <QString>

namespace workbench {

/// Shows the lines of the log from a level upwards whose category or text contains a given text,
/// compared without case.
class LogFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setMinLevel(int level);
    void setText(const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    int m_minLevel = 0;
    QString m_text;
};

} // namespace workbench
