#pragma once

#include <zvutil/zvutil_export.h>

#include <QAbstractItemModel>
#include <QVariant>

namespace libzvutil {

class ZvStyle;

/// A style as a tree of one column: the groups "Brushes", "Icons" and "Editors", and below them the
/// brushes, the icons, and the editors with their brushes. A row's text is a name, its decoration a
/// `QColor` or a `QIcon`; there is nothing for any other role.
///
/// The model works on a copy of its style: edits reach neither a library nor the application. No
/// row is marked as editable; `setData` is for direct calls.
///
/// `index` returns another index for a brush of an editor at each call, which differs from the
/// earlier ones and keeps some bytes until `setStyle` is called or the model is destroyed. The
/// parent of an icon has the row 0, though the group is in row 1. GUI thread only.
/// @since 0.1 @ingroup styles
class ZVUTIL_EXPORT ZvStyleModel : public QAbstractItemModel
{
public:
    /// A model of a copy of the application's current style.
    /// @param parent owns the model; may be null
    ZvStyleModel(QObject* parent = nullptr);
    /// The same for another style.
    /// @param style is copied
    /// @param parent owns the model; may be null
    ZvStyleModel(const ZvStyle& style, QObject* parent);
    /// Frees the copy of the style and what the indexes point to.
    ~ZvStyleModel() override;

    /// @return the model's copy, with the edits made so far. Valid as long as the model.
    const ZvStyle& style();
    /// Resets the model to another style; the edits are lost, and no index is valid any more.
    /// @param style is copied; may be the model's own
    void setStyle(const ZvStyle& style);

    /// @return an index of any row and column below the root, a group or an editor, whether there
    /// is such a row or not; one that there isn't has no data. Invalid below a brush or an icon.
    /// @param row isn't checked
    /// @param column isn't checked
    /// @param parent an index of this model, or an invalid one for the root
    QModelIndex index(int row, int column,
                      const QModelIndex& parent = QModelIndex()) const override;
    /// @return the parent of a row; that of an icon has row 0. Invalid for a group.
    /// @param index an index of this model
    QModelIndex parent(const QModelIndex& index) const override;
    using QObject::parent;
    /// @return the number of rows of the root, a group or an editor; 0 for a brush or an icon.
    /// @param parent an index of this model, or an invalid one for the root
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// @return 1, or 0 for a row that has no rows below it.
    /// @param parent an index of this model, or an invalid one for the root
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// @return the name for `Qt::DisplayRole`, the `QColor` or `QIcon` for `Qt::DecorationRole`,
    /// else nothing.
    /// @param index an index of this model
    /// @param role one of the two
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Sets the colour of a brush. Emits `dataChanged` for this row and role. Changes the one
    /// entry: the shades of an accent stay.
    /// @param index of a brush
    /// @param value whatever `QVariant` converts to a `QColor`; anything else makes the colour
    /// invalid
    /// @param role `Qt::DecorationRole`
    /// @return false, with nothing changed, for any other role and for rows that aren't brushes
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    class Impl;

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvStyleModel) == sizeof(QAbstractItemModel) + sizeof(void*));

} // namespace libzvutil
