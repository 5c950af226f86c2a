#pragma once

#include <QAbstractListModel>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <vector>

namespace workbench {

/// Presents rows of a list of paths as files: the name to show, the path as the tool tip and, for a
/// delegate, the folder.
///
/// Only the numbers of the rows are stored. Whenever the list changes other than by rows at its
/// end, the owner has to clear this model and append rows again.
class FilteredFilesModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FolderRole = Qt::UserRole, ///< the folder, which ends in a separator only if it is a root
        PathRole ///< the path as in the list
    };

    explicit FilteredFilesModel(QObject* parent);

    /// Removes all rows and takes another list, which the caller owns.
    void setSource(QAbstractItemModel* source);

    void clear();
    /// Appends rows, by their numbers in the list.
    void append(const std::vector<int>& sourceRows);

    /// Shows the rows in another order, by their positions in the present one; those that are left out are
    /// removed. Indexes follow their rows.
    void arrange(const std::vector<int>& positions);
    /// Shows the rows in the order of the list.
    void arrangeAsFound();

    /// Returns the paths of all rows.
    QStringList paths() const;
    /// Returns the path of a file, or an empty text for an invalid index.
    QString path(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    void removeOthers(std::vector<int>& positions);

    QPointer<QAbstractItemModel> m_source;
    std::vector<int> m_rows;
};

} // namespace workbench
