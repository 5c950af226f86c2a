#include "impl/ZvStyleModelImpl.h"

#include "impl/ZvEditorStyleImpl.h"
#include "impl/ZvStyleImpl.h"
#include "impl/text/utf8.h"

#include <QColor>
#include <QIcon>
#include <QString>

#include <cstddef>

namespace libzvutil {

namespace {

template <typename Entries>
int count(const Entries& entries)
{
    return static_cast<int>(entries.size());
}

QVariant groupData(const QModelIndex& index, int role, const QString& name)
{
    return role == Qt::DisplayRole && index.column() == 0 ? name : QVariant();
}

QVariant colourData(const ZvNamedColour* colour, int role)
{
    if (colour && role == Qt::DisplayRole)
        return colour->name().toQString();
    if (colour && role == Qt::DecorationRole)
        return colour->qColour();
    return {};
}

bool setColourData(ZvNamedColour* colour, const QVariant& value, int role)
{
    if (!colour || role != Qt::DecorationRole)
        return false;
    // By contract: setData() turns a value that isn't a colour into an invalid colour. Only direct
    // calls reach it, since no row is editable.
    colour->setColour(value.value<QColor>());
    return true;
}

} // namespace

ZvStyleModel::Impl::AbstractHandler::AbstractHandler(Impl& impl)
    : m_impl(&impl)
{
}

ZvStyleModel::Impl::AbstractHandler::~AbstractHandler() = default;

bool ZvStyleModel::Impl::AbstractHandler::setData(const QModelIndex& /*index*/,
                                                  const QVariant& /*value*/, int /*role*/)
{
    return false;
}

int ZvStyleModel::Impl::BrushesHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::BrushesHandler::data(const QModelIndex& index, int role) const
{
    return groupData(index, role, QStringLiteral("Brushes"));
}

int ZvStyleModel::Impl::BrushesHandler::rowCount(const QModelIndex& /*index*/) const
{
    return impl().brushCount();
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::BrushesHandler::kind() const
{
    return Brushes;
}

int ZvStyleModel::Impl::IconsHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::IconsHandler::data(const QModelIndex& index, int role) const
{
    return groupData(index, role, QStringLiteral("Icons"));
}

int ZvStyleModel::Impl::IconsHandler::rowCount(const QModelIndex& /*index*/) const
{
    return impl().iconCount();
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::IconsHandler::kind() const
{
    return Icons;
}

int ZvStyleModel::Impl::EditorsHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::EditorsHandler::data(const QModelIndex& index, int role) const
{
    return groupData(index, role, QStringLiteral("Editors"));
}

int ZvStyleModel::Impl::EditorsHandler::rowCount(const QModelIndex& /*index*/) const
{
    return impl().editorCount();
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::EditorsHandler::kind() const
{
    return Editors;
}

int ZvStyleModel::Impl::BrushHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::BrushHandler::data(const QModelIndex& index, int role) const
{
    return colourData(impl().brush(index.row()), role);
}

int ZvStyleModel::Impl::BrushHandler::rowCount(const QModelIndex& /*index*/) const
{
    return 0;
}

bool ZvStyleModel::Impl::BrushHandler::setData(const QModelIndex& index, const QVariant& value,
                                               int role)
{
    return setColourData(impl().brush(index.row()), value, role);
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::BrushHandler::kind() const
{
    return Brush;
}

int ZvStyleModel::Impl::IconHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::IconHandler::data(const QModelIndex& index, int role) const
{
    const ZvNamedIcon* const icon = impl().icon(index.row());
    if (icon && role == Qt::DisplayRole)
        return icon->name().toQString();
    if (icon && role == Qt::DecorationRole)
        return QIcon(zvutil::impl::any_utf8_text(icon->path().c_str()));
    return {};
}

int ZvStyleModel::Impl::IconHandler::rowCount(const QModelIndex& /*index*/) const
{
    return 0;
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::IconHandler::kind() const
{
    return Icon;
}

int ZvStyleModel::Impl::EditorHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::EditorHandler::data(const QModelIndex& index, int role) const
{
    const ZvEditorStyle* const editor = impl().editor(index.row());
    return editor && role == Qt::DisplayRole ? QString::fromUtf8(editor->name()) : QVariant();
}

int ZvStyleModel::Impl::EditorHandler::rowCount(const QModelIndex& index) const
{
    return impl().editorBrushCount(index.row());
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::EditorHandler::kind() const
{
    return Editor;
}

ZvStyleModel::Impl::EditorColourHandler::EditorColourHandler(Impl& impl, int editorRow)
    : AbstractHandler(impl)
    , m_editorRow(editorRow)
{
}

int ZvStyleModel::Impl::EditorColourHandler::columnCount(const QModelIndex& /*index*/) const
{
    return 1;
}

QVariant ZvStyleModel::Impl::EditorColourHandler::data(const QModelIndex& index, int role) const
{
    return colourData(impl().editorBrush(m_editorRow, index.row()), role);
}

int ZvStyleModel::Impl::EditorColourHandler::rowCount(const QModelIndex& /*index*/) const
{
    return 0;
}

bool ZvStyleModel::Impl::EditorColourHandler::setData(const QModelIndex& index,
                                                      const QVariant& value, int role)
{
    return setColourData(impl().editorBrush(m_editorRow, index.row()), value, role);
}

ZvStyleModel::Impl::Kind ZvStyleModel::Impl::EditorColourHandler::kind() const
{
    return EditorColour;
}

ZvStyleModel::Impl::Impl(const ZvStyle& shownStyle)
    : style(shownStyle)
{
}

ZvStyleModel::Impl::AbstractHandler* ZvStyleModel::Impl::handler(const QModelIndex& index)
{
    return index.isValid() ? static_cast<AbstractHandler*>(index.internalPointer()) : nullptr;
}

ZvStyleModel::Impl::AbstractHandler* ZvStyleModel::Impl::group(int row)
{
    switch (row) {
    case 0:
        return &brushes;
    case 1:
        return &icons;
    case 2:
        return &editors;
    default:
        return nullptr;
    }
}

ZvStyleModel::Impl::AbstractHandler* ZvStyleModel::Impl::addColourHandler(int editorRow)
{
    colourHandlers.push_back(std::make_shared<EditorColourHandler>(*this, editorRow));
    return colourHandlers.back().get();
}

int ZvStyleModel::Impl::brushCount() const
{
    // By contract: the model hides the last brush and the last icon, both named "TOTAL".
    return count(style.d_impl()->colours) - 1;
}

int ZvStyleModel::Impl::iconCount() const
{
    return count(style.d_impl()->icons) - 1;
}

int ZvStyleModel::Impl::editorCount() const
{
    return count(style.d_impl()->editors);
}

ZvNamedColour* ZvStyleModel::Impl::brush(int row)
{
    return row < brushCount() ? &style.d_impl()->colours[static_cast<std::size_t>(row)] : nullptr;
}

const ZvNamedIcon* ZvStyleModel::Impl::icon(int row) const
{
    return row < iconCount() ? &style.d_impl()->icons[static_cast<std::size_t>(row)] : nullptr;
}

const ZvEditorStyle* ZvStyleModel::Impl::editor(int row) const
{
    return row < editorCount() ? &style.d_impl()->editors[static_cast<std::size_t>(row)] : nullptr;
}

int ZvStyleModel::Impl::editorBrushCount(int editorRow) const
{
    const ZvEditorStyle* const found = editor(editorRow);
    return found ? count(found->d_impl()->brushes) : 0;
}

ZvNamedColour* ZvStyleModel::Impl::editorBrush(int editorRow, int row)
{
    if (row >= editorBrushCount(editorRow))
        return nullptr;
    ZvEditorStyle& found = style.d_impl()->editors[static_cast<std::size_t>(editorRow)];
    return &found.d_impl()->brushes[static_cast<std::size_t>(row)];
}

} // namespace libzvutil
