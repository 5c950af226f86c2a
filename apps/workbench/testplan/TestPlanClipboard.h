#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <zvutil/ZvTable.h>

#include <QByteArray>

#include <optional>
#include <vector>

namespace workbench {

/// Cells in rows of the same length.
struct CellGrid
{
    int rows = 0;
    int columns = 0;
    std::vector<CellValue> cells; ///< row by row

    CellValue& at(int row, int column);
    const CellValue& at(int row, int column) const;
};

/// More cells than these aren't pasted.
constexpr qint64 maximumPasteCells = 5'000'000;

/// What the text of CSV would give as a table.
struct CsvShape
{
    bool isReadable = false; ///< no record has more fields than the first
    qint64 rows = 0;
    qint64 columns = 0;
};

CsvShape csvShape(const QByteArray& csv);

/// Text with tabs between cells and line ends between rows, as spreadsheets offer it. A cell in
/// quotes may hold tabs and line ends. Has a size, but no cells, if there were more than can be
/// pasted. Throws `Stopped` if \p progress says so.
CellGrid gridOfText(const QString& text, const Progress& progress);

/// Puts the cells on the clipboard, for this application and for others.
void copyToClipboard(const CellGrid& grid);

/// What a paste would bring. It is measured first, for it may be too large to be read.
class ClipboardCells
{
public:
    /// Of what is on the clipboard now. Throws `Stopped` if \p progress says so.
    explicit ClipboardCells(const Progress& progress);

    bool isEmpty() const;
    qint64 rows() const;
    qint64 columns() const;

    /// All cells, of which there may be no more than `maximumPasteCells`. What other programs offer
    /// becomes what typing it would give. Throws `Stopped` if \p progress says so.
    CellGrid grid(const Progress& progress) const;

private:
    qint64 m_rows = 0;
    qint64 m_columns = 0;
    // One of these; the clipboard may be another's by the time that they are pasted.
    std::optional<ZvTable> m_table;
    QByteArray m_csv;
    CellGrid m_text;
};

} // namespace workbench
