#pragma once

#include <QAbstractListModel>
#include <QPointer>
#include <QString>

#include <vector>

namespace workbench {

/// Some rows of a list of paths, as files: the name to show, the path as the tool tip and, for
/// a delegate, the folder.
///
/// It keeps the numbers of the rows alone. Whenever the list changes otherwise than by rows at its
/// end, somebody has to set the rows anew.
class FilteredFilesModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FolderRole = Qt::UserRole, ///< without a separator at its end
        PathRole ///< as the list has it
    };

    explicit FilteredFilesModel(QObject* parent);

    /// Leaves no rows. The list isn't owned.
    void setSource(QAbstractItemModel* source);

    void clear();
    /// Appends rows of the list.
    void append(const std::vector<int>& sourceRows);

    /// Empty for an invalid index.
    QString path(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QPointer<QAbstractItemModel> m_source;
    std::vector<int> m_rows;
};

} // namespace workbench
