#include "impl/tables/ZvTableClipboardData.h"

#include "impl/tables/mime_type_text.h"

#include <QByteArray>

#include <utility>

using zvutil::mime_type;
using zvutil::impl::mime_type_text;

ZvTableClipboardData::ZvTableClipboardData(ZvTable&& table)
    : m_table(std::move(table))
{
    const QByteArray csv(m_table.toCSV().c_str());
    setData(mime_type_text(mime_type::csv), csv);
    setData(mime_type_text(mime_type::windows_csv), csv);
    setText(m_table.toTSV().toQString());
}

ZvTableClipboardData::~ZvTableClipboardData() = default;

bool ZvTableClipboardData::hasInternalMimeType(ZvInternalMimeType type) const
{
    return type == ZvInternalMimeType::table;
}

ZvTable ZvTableClipboardData::internalTableData() const
{
    return m_table;
}
