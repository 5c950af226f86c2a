#pragma once

#include "search/SearchRequest.h"

#include <QAbstractTableModel>

namespace workbench {

/// The lines that a search has found: file, number and text.
class HitsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { FileColumn, LineColumn, TextColumn, ColumnCount };
    /// The model's roles. Their values are above those of `FilteredFilesModel`, since the column of
    /// files has its `FolderRole`, too.
    enum Role {
        PositionRole = Qt::UserRole + 10 ///< where in the line the text that was found begins
    };

    explicit HitsModel(QObject* parent);

    void clear();
    void append(const QVector<SearchHit>& hits);
    const SearchHit& hit(int row) const;
    /// Returns how many files have at least one hit.
    int fileCount() const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QVector<SearchHit> m_hits;
    int m_fileCount = 0;
};

} // namespace workbench
