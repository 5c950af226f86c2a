#pragma once

#include <zv_logging/host.h>

#include <QAbstractTableModel>
#include <QString>

#include <deque>
#include <vector>

namespace workbench {

/// The last lines of the log: level, category and text. Beyond `maxLines`, each new line replaces
/// the oldest one.
class LogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { LevelColumn, CategoryColumn, TextColumn, ColumnCount };
    enum Role {
        LevelRole = Qt::UserRole ///< the level as a number
    };
    static constexpr int maxLines = 10'000;

    explicit LogModel(QObject* parent);

    void clear();
    void append(const std::vector<zvutil::logging::host::Record>& records);
    /// Shows the levels in the colours of the current style; call after the style has changed.
    void recolour();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Line
    {
        int level;
        QString category;
        QString text;
    };

    QString text(const Line& line, int column) const;

    std::deque<Line> m_lines;
};

} // namespace workbench
