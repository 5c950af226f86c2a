#include <zvutil/ZvClipboard.h>

#include "impl/tables/ZvTableClipboardData.h"
#include "impl/tables/mime_type_text.h"

#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>
#include <utility>

using libzvutil::ZvString;
using zvutil::mime_type;

namespace {

const QMimeData* content()
{
    return QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
}

} // namespace

ZvClipboard::ZvClipboard() = default;

ZvClipboard& ZvClipboard::operator=(const ZvClipboard& /*other*/) = default;

ZvClipboard& ZvClipboard::operator=(ZvClipboard&& /*other*/) noexcept = default;

ZvClipboardData ZvClipboard::clipboardData() const
{
    return ZvClipboardData(content());
}

bool ZvClipboard::hasTableData() const
{
    return clipboardData().hasTableData();
}

bool ZvClipboard::hasText() const
{
    return hasType(mime_type::text);
}

bool ZvClipboard::hasType(ZvInternalMimeType type) const
{
    return clipboardData().hasType(type);
}

bool ZvClipboard::hasType(mime_type type) const
{
    return clipboardData().hasType(type);
}

ZvTable ZvClipboard::tableData() const
{
    return clipboardData().tableData();
}

ZvString ZvClipboard::stringData() const
{
    const QMimeData* const data = content();
    if (!data)
        return {};
    // By contract: stringData() returns what Qt stores under the format's name, including the text
    // that Qt makes of a list of URIs. QMimeData::text() would also take other formats for text.
    const QByteArray bytes = data->data(zvutil::impl::mime_type_text(mime_type::text));
    return bytes.isNull() ? ZvString() : ZvString(bytes.toStdString().c_str());
}

void ZvClipboard::setData(const ZvTable& table)
{
    setData(ZvTable(table));
}

void ZvClipboard::setData(ZvTable&& table)
{
    auto data = std::make_unique<ZvTableClipboardData>(std::move(table));
    QGuiApplication::clipboard()->setMimeData(data.release(), QClipboard::Clipboard);
}
