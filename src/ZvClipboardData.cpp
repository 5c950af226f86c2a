#include <zvutil/ZvClipboardData.h>

#include <zvutil/details/log_level.h>

#include "impl/ZvClipboardDataImpl.h"
#include "impl/tables/ZvClipboardInternalData.h"
#include "impl/tables/csv_table.h"
#include "impl/tables/mime_type_text.h"

#include <zv_logging/zv_logging.h>

#include <QByteArray>
#include <QMimeData>
#include <QString>
#include <QVariant>

#include <exception>
#include <string>
#include <utility>

using zvutil::mime_type;
using zvutil::impl::csv_table;
using zvutil::impl::mime_type_text;

namespace {

/// The bytes of the first CSV format, or null.
QByteArray csvBytes(const QMimeData& data)
{
    const QByteArray bytes = data.data(mime_type_text(mime_type::windows_csv));
    return bytes.isNull() ? data.data(mime_type_text(mime_type::csv)) : bytes;
}

ZvTable tableOf(const csv_table& matrix)
{
    ZvTable table(matrix.rows(), matrix.columns(), libzvutil::ZvVariant());
    for (std::size_t row = 0; row < matrix.rows(); ++row) {
        for (std::size_t column = 0; column < matrix.columns(); ++column)
            // Equals assigning a `ZvVariant` of the cell, with one allocation less.
            table.value(row, column) = QVariant(QString::fromUtf8(matrix.cell(row, column)));
    }
    return table;
}

} // namespace

ZvClipboardData::ZvClipboardData()
    : ZvClipboardData(static_cast<Impl*>(nullptr))
{
}

ZvClipboardData::ZvClipboardData(const QMimeData* data)
    : ZvClipboardData(new Impl(data))
{
}

ZvClipboardData::ZvClipboardData(const ZvClipboardInternalData* data)
    : ZvClipboardData(static_cast<const QMimeData*>(data))
{
}

ZvClipboardData::ZvClipboardData(const ZvClipboardData& other)
    : ZvClipboardData(other.mimeData())
{
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor)
ZvClipboardData::ZvClipboardData(ZvClipboardData&& other)
    : ZvClipboardData(std::exchange(other.m_implementation, nullptr))
{
    if (d_impl())
        disconnect(d_impl(), nullptr, &other, nullptr);
}

ZvClipboardData::ZvClipboardData(Impl* implementation)
try : m_implementation(implementation) {
    if (d_impl())
        connect(d_impl(), &Impl::invalidated, this,
                [this] { Q_EMIT invalidated(QPrivateSignal()); });
} catch (...) {
    // Nobody else owns it where the memory is too short for the base class.
    delete implementation;
}

ZvClipboardData::~ZvClipboardData()
{
    delete m_implementation;
}

bool ZvClipboardData::isNull() const
{
    return !d_impl();
}

bool ZvClipboardData::isValid() const
{
    return d_impl() && d_impl()->mimeData;
}

const QMimeData* ZvClipboardData::mimeData() const
{
    return d_impl()->mimeData;
}

bool ZvClipboardData::hasTableData() const
{
    return hasType(ZvInternalMimeType::table) || hasType(mime_type::csv)
        || hasType(mime_type::windows_csv);
}

bool ZvClipboardData::hasType(ZvInternalMimeType type) const
{
    const ZvClipboardInternalData* const data = d_impl()->internalData();
    return data && data->hasInternalMimeType(type);
}

bool ZvClipboardData::hasType(mime_type type) const
{
    // By contract: hasType() returns false for a spreadsheet even if the content has that format.
    // The library can't read it.
    if (type == mime_type::xml_spreadsheet || !mimeData())
        return false;
    const ZvClipboardInternalData* const data = d_impl()->internalData();
    return data ? data->hasMimeType(type) : mimeData()->hasFormat(mime_type_text(type));
}

ZvTable ZvClipboardData::tableData() const
{
    if (!isValid())
        return {};
    if (hasType(ZvInternalMimeType::table))
        return d_impl()->internalData()->internalTableData();
    return hasTableData() ? csvData() : ZvTable();
}

ZvTable ZvClipboardData::csvData() const
{
    if (!isValid())
        return {};
    QByteArray bytes = csvBytes(*mimeData());
    if (bytes.isNull())
        return {};
    try {
        std::string text = bytes.toStdString();
        bytes.clear();
        return tableOf(csv_table(std::move(text)));
    } catch (const std::exception& error) {
        zvutil::logging::write(zvutil::details::log_error, error.what(), "");
        return {};
    }
}

ZvClipboardData::Impl* ZvClipboardData::d_impl()
{
    return m_implementation;
}

const ZvClipboardData::Impl* ZvClipboardData::d_impl() const
{
    return m_implementation;
}
