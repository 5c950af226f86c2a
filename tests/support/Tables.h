#pragma once

#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvVariant.h>

#include <QString>
#include <QVariant>
#include <QVector>

#include <cstring>
#include <string>

namespace zvtest {

using Row = QVector<QVariant>;
using Grid = QVector<Row>;

/// All rows must be as long as the first one.
inline ZvTable tableOf(const Grid& grid)
{
    const int columns = grid.isEmpty() ? 0 : grid.first().size();
    ZvTable table(static_cast<unsigned>(grid.size()), static_cast<unsigned>(columns), 0);
    for (int row = 0; row < grid.size(); ++row) {
        for (int column = 0; column < columns; ++column)
            table.value(static_cast<unsigned>(row), static_cast<unsigned>(column)) =
                grid[row][column];
    }
    return table;
}

inline Grid gridOf(const ZvTable& table)
{
    Grid grid;
    for (unsigned long long row = 0; row < table.rows(); ++row) {
        Row cells;
        for (unsigned long long column = 0; column < table.columns(); ++column)
            cells.append(table.value(row, column).data());
        grid.append(cells);
    }
    return grid;
}

/// What its users can't ask.
inline bool hasStorage(const ZvTable& table)
{
    void* storage = nullptr;
    static_assert(sizeof(storage) == sizeof(table));
    std::memcpy(&storage, static_cast<const void*>(&table), sizeof(storage));
    return storage != nullptr;
}

/// With all that may lie behind a NUL.
inline std::string bytesOf(const libzvutil::ZvString& text)
{
    return std::string(text.c_str(), text.size());
}

/// The text of a table in the plain steps, one cell after the other.
inline std::string plainText(const ZvTable& table, char separator)
{
    libzvutil::ZvString result;
    const auto shorten = [&result] {
        if (result.size() > 0)
            result.resize(result.size() - 1);
    };
    for (unsigned long long row = 0; row < table.rows(); ++row) {
        for (unsigned long long column = 0; column < table.columns(); ++column) {
            QString cell = table.value(row, column).data().toString();
            if (cell.indexOf(QChar::fromLatin1(separator), 0, Qt::CaseSensitive) >= 0)
                cell = QLatin1Char('"') + cell + QLatin1Char('"');
            result += cell + QChar::fromLatin1(separator);
        }
        shorten();
        result += '\n';
    }
    shorten();
    return bytesOf(result);
}

} // namespace zvtest
