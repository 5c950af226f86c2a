#pragma once

#include <zvutil/zvutil_export.h>

#include <QIdentityProxyModel>
#include <QPersistentModelIndex>

/// One branch of a tree as a whole model: the children of an index of the source are its top level.
/// Data and flags are as in the source, and so are rows below the top level. What a view asks of the
/// invisible top itself, such as `fetchMore` or a drop between its rows, is asked of that of the
/// source, not of the root.
///
/// Set the source first, then the root:
/// \code
/// auto* const branch = new ZvChildProxyModel(parent);
/// branch->setSourceModel(tree);
/// branch->setRootModelIndex(tree->index(2, 0));
/// view->setModel(branch);
/// \endcode
/// Without a source it is empty. **Without a root it counts the top level of the source but has no
/// indexes for it**; that is also so when the source has removed the root. The root follows its row
/// when that moves.
///
/// The source's signals come through as they are, for rows outside of the branch as well: those
/// have an invalid parent here. So a source whose rows change next to the branch needs
/// `setRootModelIndex` again, which resets the model. A move that is none here, since it begins or
/// ends outside of the branch, resets it at once.
class ZVUTIL_EXPORT ZvChildProxyModel : public QIdentityProxyModel
{
public:
    ZvChildProxyModel(QObject* parent = nullptr);
    ~ZvChildProxyModel() override;

    /// Shows the children of \p index, an index of the source; none, if it is invalid. Resets the
    /// model.
    void setRootModelIndex(const QModelIndex& index);

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;

    /// Forgets the root, also if \p model is the source already.
    void setSourceModel(QAbstractItemModel* model) override;

    /// Invalid for the root itself and for all that isn't below it.
    QModelIndex mapFromSource(const QModelIndex& source) const override;

protected:
    /// Whether \p index, an index of the source, is the root or lies below it. Nothing does if
    /// there is no root.
    bool isDescendedFromRoot(const QModelIndex& index) const;

private:
    QPersistentModelIndex m_root;
};

static_assert(sizeof(ZvChildProxyModel) == sizeof(QIdentityProxyModel) + sizeof(void*));
