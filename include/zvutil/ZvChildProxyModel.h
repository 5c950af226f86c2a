#pragma once

#include <zvutil/zvutil_export.h>

#include <QIdentityProxyModel>
#include <QPersistentModelIndex>

/// One branch of a tree as a whole model: the children of an index of the source are its top level.
/// Data and flags are as in the source, and so are rows below the top level. Calls for the
/// invisible top itself, such as `fetchMore` or a drop between its rows, go to the source's top, not
/// to the root.
///
/// Set the source first, then the root:
/// @code{.cpp}
/// #include <QTreeView>
///
/// void showBranch(const QModelIndex& root, QTreeView* view)
/// {
///     auto* const branch = new ZvChildProxyModel(view);
///     branch->setSourceModel(const_cast<QAbstractItemModel*>(root.model()));
///     branch->setRootModelIndex(root);
///     view->setModel(branch);
/// }
/// @endcode
/// Without a source the model is empty. **Without a root the model counts the top level of the
/// source but has no indexes for it**; that is also so when the source has removed the root. The
/// root follows its row when that moves.
///
/// The model announces what the source changes within the branch, and nothing that it changes beside
/// the branch. A move that begins or ends outside of the branch, and the removal of the
/// root, reset the model. Without a root it is the changes of the source's top level that are
/// announced.
///
/// **`insertRows`, `removeRows` and the like with an invalid parent change the top level of the
/// source**, not the children of the root: an invalid index stands for the source's own top. To
/// change the branch call them on the source, with the root as the parent.
/// @since 0.1 @ingroup models
class ZVUTIL_EXPORT ZvChildProxyModel : public QIdentityProxyModel
{
public:
    /// A model without source and root, which is empty.
    /// @param parent owns the model; may be null
    ZvChildProxyModel(QObject* parent = nullptr);
    /// Leaves the source as it is.
    ~ZvChildProxyModel() override;

    /// Shows the children of an index. Resets the model.
    /// @param index an index of the source; with an invalid one nothing is shown
    void setRootModelIndex(const QModelIndex& index);

    /// @return the index for a place below \p parent; an invalid \p parent stands for the root.
    /// Invalid without a root.
    /// @param row counted from 0
    /// @param column counted from 0
    /// @param parent an index of this model, or an invalid one
    QModelIndex index(int row, int column,
                      const QModelIndex& parent = QModelIndex()) const override;
    /// @return the number of rows of \p parent in the source; an invalid \p parent stands for the
    /// root, or without one for the source's top level.
    /// @param parent an index of this model, or an invalid one
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// @return the number of columns, by the same rule as `rowCount`.
    /// @param parent an index of this model, or an invalid one
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;

    /// Shows a model. Forgets the root, even if the model is the source already.
    /// @param model isn't owned; may be null
    void setSourceModel(QAbstractItemModel* model) override;

    /// @return the index here for an index of the source; invalid for the root itself and for
    /// everything that isn't below it.
    /// @param source an index of the source
    QModelIndex mapFromSource(const QModelIndex& source) const override;

protected:
    /// @return whether \p index is the root or lies below it. Nothing does if there is no root.
    /// @param index an index of the source
    bool isDescendedFromRoot(const QModelIndex& index) const;

private:
    class ZVUTIL_NO_EXPORT Announcer;

    QPersistentModelIndex m_root;
};

static_assert(sizeof(ZvChildProxyModel) == sizeof(QIdentityProxyModel) + sizeof(void*));
