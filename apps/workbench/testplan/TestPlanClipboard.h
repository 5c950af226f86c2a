#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <zvutil/ZvTable.h>

#include <QByteArray>

#include <optional>
#include <vector>

namespace workbench {

/// Cells in rows of equal length.
struct CellGrid
{
    int rows = 0;
    int columns = 0;
    std::vector<CellValue> cells; ///< row by row

    CellValue& at(int row, int column);
    const CellValue& at(int row, int column) const;
};

/// The largest number of cells that can be pasted.
constexpr qint64 maxPasteCells = 5'000'000;

/// The size of the table that the library would read from CSV.
struct CsvShape
{
    bool isReadable = false; ///< no record has more fields than the first
    qint64 rows = 0;
    qint64 columns = 0;
};

CsvShape csvShape(const QByteArray& csv);

/// Returns the cells in text with tabs between cells and line ends between rows, as spreadsheets
/// offer it. A cell in quotes may contain tabs and line ends. Above `maxPasteCells` the grid has a
/// size, but no cells. Throws `Stopped` if \p progress returns false.
CellGrid gridOfText(const QString& text, const Progress& progress);

/// Puts the cells on the clipboard, for this application and for others.
void copyToClipboard(const CellGrid& grid);

/// The cells that a paste would bring. Their number is known before they are read, for they may be
/// too many.
class ClipboardCells
{
public:
    /// Measures what is on the clipboard now. Throws `Stopped` if \p progress returns false.
    explicit ClipboardCells(const Progress& progress);

    bool isEmpty() const;
    qint64 rows() const;
    qint64 columns() const;

    /// Returns all cells; there must be no more than `maxPasteCells`. A cell of another program
    /// becomes what typing its text would give. Throws `Stopped` if \p progress returns false.
    CellGrid grid(const Progress& progress) const;

private:
    qint64 m_rows = 0;
    qint64 m_columns = 0;
    // Exactly one of these holds the content, since the clipboard may have changed when it is
    // pasted.
    std::optional<ZvTable> m_table;
    QByteArray m_csv;
    CellGrid m_text;
};

} // namespace workbench
