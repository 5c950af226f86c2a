#include <zvutil/ZvTable.h>

#include "impl/tables/delimited_row_writer.h"

#include <QString>
#include <QVariant>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

using libzvutil::ZvString;
using libzvutil::ZvVariant;

namespace {

/// The number of cells of a grid. Throws `std::length_error` if it has no such number.
std::size_t cellCount(unsigned long long rows, unsigned long long columns)
{
    if (columns != 0 && rows > std::numeric_limits<std::size_t>::max() / columns)
        throw std::length_error("ZvTable: too many cells");
    return static_cast<std::size_t>(rows * columns);
}

/// Adds a cell's text to its row.
void append(zvutil::impl::delimited_row_writer& row, const QVariant& cell)
{
    // Equals toString(), without a copy of the text.
    if (cell.userType() == QMetaType::QString)
        row.append(*static_cast<const QString*>(cell.constData()));
    else if (!row.append_number(cell))
        row.append(cell.toString());
}

void removeLast(ZvString& text)
{
    if (text.size() != 0)
        text.resize(text.size() - 1);
}

/// The number of rows after which the length of the whole text is estimated.
constexpr unsigned long long sampleRows = 1000;

/// Reserves room in \p text, so that a long text isn't copied repeatedly while it grows.
void reserve(ZvString& text, std::size_t size)
{
    const std::size_t before = text.size();
    text.resize(std::max(size, before));
    text.resize(before);
}

} // namespace

class ZVUTIL_NO_EXPORT ZvTable::Impl
{
public:
    Impl(unsigned long long rowCount, unsigned long long columnCount, const ZvVariant& fill)
        : cells(cellCount(rowCount, columnCount), fill)
        , rows(rowCount)
        , columns(columnCount)
        , rowCapacity(rowCount)
        , columnCapacity(columnCount)
    {
    }

    std::size_t index(unsigned long long row, unsigned long long column) const
    {
        return static_cast<std::size_t>(row * columnCapacity + column);
    }

    ZvString text(char separator) const;
    std::size_t likelySize(std::size_t sampleSize) const;

    std::vector<ZvVariant> cells; ///< row by row
    unsigned long long rows;
    unsigned long long columns;
    unsigned long long rowCapacity;
    unsigned long long columnCapacity;
};

/// The estimated length of the text of all rows, from that of the first ones; at most about as much
/// as the cells themselves take.
std::size_t ZvTable::Impl::likelySize(std::size_t sampleSize) const
{
    constexpr std::size_t cellSize = 48;
    const std::size_t perRow = sampleSize / sampleRows + 1;
    return std::min(perRow, cellSize * static_cast<std::size_t>(columns))
        * static_cast<std::size_t>(rows);
}

ZvString ZvTable::Impl::text(char separator) const
{
    ZvString result;
    // Rows without cells give an empty text, however many there are.
    if (columns == 0)
        return result;
    zvutil::impl::delimited_row_writer line(separator);
    for (unsigned long long row = 0; row < rows; ++row) {
        line.clear();
        for (unsigned long long column = 0; column < columns; ++column)
            append(line, cells[index(row, column)].data());
        // By contract: text() removes the last character of each row, even if a cell's NUL cut off
        // the separator. That character may be the line feed of the row above.
        if (line.is_empty())
            removeLast(result);
        else
            line.remove_last();
        result += line.text('\n');
        if (row == sampleRows)
            reserve(result, likelySize(result.size()));
    }
    removeLast(result);
    return result;
}

ZvTable::ZvTable() noexcept = default;

ZvTable::ZvTable(unsigned long long rows, unsigned long long columns, const ZvVariant& fill)
    : m_implementation(new Impl(rows, columns, fill))
{
}

ZvTable::ZvTable(const ZvTable& other)
    : m_implementation(new Impl(*other.d_impl()))
{
}

ZvTable::ZvTable(ZvTable&& other) noexcept
    : m_implementation(std::exchange(other.m_implementation, nullptr))
{
}

ZvTable::~ZvTable()
{
    delete m_implementation;
}

unsigned long long ZvTable::rows() const
{
    return d_impl()->rows;
}

unsigned long long ZvTable::columns() const
{
    return d_impl()->columns;
}

ZvVariant& ZvTable::value(unsigned long long row, unsigned long long column)
{
    return d_impl()->cells[d_impl()->index(row, column)];
}

const ZvVariant& ZvTable::value(unsigned long long row, unsigned long long column) const
{
    return d_impl()->cells[d_impl()->index(row, column)];
}

ZvString ZvTable::toCSV() const
{
    return d_impl()->text(',');
}

ZvString ZvTable::toTSV() const
{
    return d_impl()->text('\t');
}

ZvTable::Impl* ZvTable::d_impl()
{
    return m_implementation;
}

const ZvTable::Impl* ZvTable::d_impl() const
{
    return m_implementation;
}
