#include <zvutil/ZvStyleModel.h>

#include "impl/ZvStyleModelImpl.h"
#include "impl/styles/command_window.h"

#include <HostSupport/ComConstruct.h>

#include <QCoreApplication>
#include <QTreeView>

#include <memory>

namespace libzvutil {

namespace {

COMERROR showCurrentStyle(int /*wordCount*/, char** /*words*/, YRef<MessageHandler> /*messages*/,
                          const ScpParseContext& /*context*/)
{
    auto* const view = new QTreeView;
    view->setModel(new ZvStyleModel(ZvStyle::Current(), view));
    // Hide the header: the model has no title for its column, so Qt would show a number.
    view->setHeaderHidden(true);
    impl::show_command_window(view, QCoreApplication::translate("libzvutil", "Current Style"));
    return COM_OK;
}

const ComConstruct showCommand("_s3", &showCurrentStyle, 0);

} // namespace

ZvStyleModel::ZvStyleModel(QObject* parent)
    : ZvStyleModel(ZvStyle::Current(), parent)
{
}

ZvStyleModel::ZvStyleModel(const ZvStyle& style, QObject* parent)
    : QAbstractItemModel(parent)
    , m_implementation(new Impl(style))
{
}

ZvStyleModel::~ZvStyleModel()
{
    std::default_delete<Impl>()(m_implementation);
}

const ZvStyle& ZvStyleModel::style()
{
    return d_impl()->style;
}

void ZvStyleModel::setStyle(const ZvStyle& style)
{
    beginResetModel();
    d_impl()->style = style;
    d_impl()->colourHandlers.clear();
    endResetModel();
}

QModelIndex ZvStyleModel::index(int row, int column, const QModelIndex& parent) const
{
    Impl& impl = *m_implementation;
    const Impl::AbstractHandler* const handler = Impl::handler(parent);
    if (!handler)
        return createIndex(row, column, impl.group(row));
    switch (handler->kind()) {
    case Impl::Brushes:
        return createIndex(row, column, &impl.brushRows);
    case Impl::Icons:
        return createIndex(row, column, &impl.iconRows);
    case Impl::Editors:
        return createIndex(row, column, &impl.editorRows);
    case Impl::Editor:
        // By contract: index() makes a new handler for each call, so two indexes of one editor
        // brush differ. An index has only one pointer, which has to identify the editor as well.
        return createIndex(row, column, impl.addColourHandler(parent.row()));
    case Impl::Brush:
    case Impl::Icon:
    case Impl::EditorColour:
        break;
    }
    return {};
}

QModelIndex ZvStyleModel::parent(const QModelIndex& index) const
{
    Impl& impl = *m_implementation;
    const Impl::AbstractHandler* const handler = Impl::handler(index);
    if (!handler)
        return {};
    switch (handler->kind()) {
    case Impl::Brush:
        return createIndex(0, 0, &impl.brushes);
    case Impl::Editor:
        return createIndex(2, 0, &impl.editors);
    case Impl::Icon:
        // By contract: parent() returns row 0 for the icon group, although it is row 1. The
        // pointer, not the row, identifies the group.
        return createIndex(0, 0, &impl.icons);
    case Impl::EditorColour:
        return createIndex(static_cast<const Impl::EditorColourHandler*>(handler)->editorRow(), 0,
                           &impl.editorRows);
    case Impl::Brushes:
    case Impl::Icons:
    case Impl::Editors:
        break;
    }
    return {};
}

int ZvStyleModel::rowCount(const QModelIndex& parent) const
{
    const Impl::AbstractHandler* const handler = Impl::handler(parent);
    return handler ? handler->rowCount(parent) : 3;
}

int ZvStyleModel::columnCount(const QModelIndex& parent) const
{
    const Impl::AbstractHandler* const handler = Impl::handler(parent);
    return handler ? handler->columnCount(parent) : 1;
}

QVariant ZvStyleModel::data(const QModelIndex& index, int role) const
{
    const Impl::AbstractHandler* const handler = Impl::handler(index);
    return handler ? handler->data(index, role) : QVariant();
}

bool ZvStyleModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    Impl::AbstractHandler* const handler = Impl::handler(index);
    if (!handler || !handler->setData(index, value, role))
        return false;
    Q_EMIT dataChanged(index, index, {Qt::DecorationRole});
    return true;
}

ZvStyleModel::Impl* ZvStyleModel::d_impl()
{
    return m_implementation;
}

const ZvStyleModel::Impl* ZvStyleModel::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
