#include <zvutil/ZvTable.h>

#include "impl/ascii_step.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using libzvutil::ZvString;
using libzvutil::ZvVariant;

namespace {

/// How many cells a grid has. Throws `std::length_error` if there is no such number.
std::size_t cellCount(unsigned long long rows, unsigned long long columns)
{
    if (columns != 0 && rows > std::numeric_limits<std::size_t>::max() / columns)
        throw std::length_error("ZvTable: too many cells");
    return static_cast<std::size_t>(rows * columns);
}

/// Appends UTF-8 up to the first NUL; tells whether that is all of \p text.
bool appendUntilNul(std::string& target, const QString& text)
{
    const auto isOther = [](QChar unit) {
        return unit.isNull() || !zvutil::impl::is_ascii(unit.unicode());
    };
    const auto plainEnd = std::find_if(text.begin(), text.end(), isOther);
    const std::size_t before = target.size();
    const std::ptrdiff_t plain = plainEnd - text.begin();
    target.resize(before + static_cast<std::size_t>(plain));
    std::transform(text.begin(), plainEnd, target.begin() + static_cast<std::ptrdiff_t>(before),
                   [](QChar unit) { return static_cast<char>(unit.unicode()); });
    if (plainEnd == text.end())
        return true;
    const QByteArray rest = text.midRef(static_cast<int>(plain)).toUtf8();
    target += rest.constData();
    return !rest.contains('\0');
}

/// Appends what a cell adds to the text of its row.
void appendCell(std::string& row, const QString& text, char separator)
{
    // Wanted: nothing but the separator makes a cell quoted, and a quote within isn't doubled.
    const bool quoted = text.contains(QLatin1Char(separator));
    if (quoted)
        row += '"';
    // Wanted: a NUL cuts off all that would come behind it.
    if (!appendUntilNul(row, text))
        return;
    if (quoted)
        row += '"';
    row += separator;
}

void removeLast(ZvString& text)
{
    if (text.size() != 0)
        text.resize(text.size() - 1);
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

    std::vector<ZvVariant> cells; ///< row by row
    unsigned long long rows;
    unsigned long long columns;
    unsigned long long rowCapacity;
    unsigned long long columnCapacity;
};

ZvString ZvTable::Impl::text(char separator) const
{
    ZvString result;
    // Rows without cells come to nothing, however many there are.
    if (columns == 0)
        return result;
    std::string line;
    for (unsigned long long row = 0; row < rows; ++row) {
        line.clear();
        for (unsigned long long column = 0; column < columns; ++column)
            appendCell(line, cells[index(row, column)].data().toString(), separator);
        // Wanted: what is last goes, also where it is no separator but the end of the row above.
        if (line.empty())
            removeLast(result);
        else
            line.pop_back();
        line += '\n';
        result += line.c_str();
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
    std::default_delete<Impl>()(m_implementation);
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
