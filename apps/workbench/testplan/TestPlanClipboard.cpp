#include "testplan/TestPlanClipboard.h"

#include <zvutil/ZvClipboard.h>

#include <QMimeData>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace workbench {

namespace {

constexpr int fieldsPerReport = 4'096;

const QString csvFormat = QStringLiteral("text/csv");

std::size_t index(int row, int column, int columns)
{
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns)
        + static_cast<std::size_t>(column);
}

/// Returns the bytes from which the library would read a table, or null.
QByteArray csvBytes()
{
    const ZvClipboardData content = ZvClipboard().clipboardData();
    if (!content.isValid())
        return {};
    const QMimeData& data = *content.mimeData();
    const QByteArray bytes =
        data.data(QStringLiteral("application/x-qt-windows-mime;value=\"Csv\""));
    return bytes.isNull() ? data.data(csvFormat) : bytes;
}

CellValue ownValue(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
        return std::isfinite(value.toDouble()) ? CellValue(value.toDouble())
                                               : CellValue(value.toString());
    case QMetaType::QString:
        return value.toString().isEmpty() ? CellValue() : value;
    default:
        return cellValue(value.toString());
    }
}

template <typename Convert>
CellGrid gridOfTable(const ZvTable& table, Convert convert, const Progress& progress)
{
    CellGrid grid;
    grid.rows = static_cast<int>(table.rows());
    grid.columns = static_cast<int>(table.columns());
    grid.cells.reserve(index(grid.rows, 0, grid.columns));
    for (unsigned long long row = 0; row < table.rows(); ++row) {
        for (unsigned long long column = 0; column < table.columns(); ++column)
            grid.cells.push_back(convert(table.value(row, column).data()));
        report(progress, static_cast<int>(row), grid.rows);
    }
    return grid;
}

/// Splits text at tabs and line ends, field by field.
class TabbedText
{
public:
    TabbedText(const QString& text, const Progress& progress)
        : m_text(text)
        , m_progress(progress)
    {
    }

    std::vector<QStringList> rows()
    {
        std::vector<QStringList> rows(1);
        while (m_place < m_text.size()) {
            rows.back().append(field());
            const bool isRowEnd =
                m_place >= m_text.size() || m_text.at(m_place) == QLatin1Char('\n');
            const bool isTabLast = !isRowEnd && m_place + 1 == m_text.size();
            ++m_place;
            if (isTabLast)
                rows.back().append(QString());
            if (isRowEnd && m_place < m_text.size())
                rows.emplace_back();
            // Progress is reported by fields, since a field may be long, and a row may have many.
            if (++m_fields % fieldsPerReport == 0 && !m_progress(m_place, m_text.size()))
                throw Stopped();
        }
        return rows;
    }

private:
    QString field()
    {
        QString quoted;
        if (m_text.at(m_place) == QLatin1Char('"') && readQuoted(quoted))
            return quoted;
        const int begin = m_place;
        while (m_place < m_text.size() && !isSeparator(m_place))
            ++m_place;
        return m_text.mid(begin, m_place - begin);
    }

    /// Reads a quoted field into \p field. Returns false for any other field, even in quotes, whose
    /// content needs none: those quotes are part of the text.
    bool readQuoted(QString& field)
    {
        bool needsQuotes = false;
        int p = m_place + 1;
        for (; p < m_text.size(); ++p) {
            const bool isQuote = m_text.at(p) == QLatin1Char('"');
            const bool isDouble =
                isQuote && p + 1 < m_text.size() && m_text.at(p + 1) == QLatin1Char('"');
            if (isQuote && !isDouble)
                break;
            needsQuotes = needsQuotes || isDouble || isSeparator(p);
            p += isDouble ? 1 : 0;
        }
        const bool isClosed = p < m_text.size() && (p + 1 == m_text.size() || isSeparator(p + 1));
        if (!isClosed || !needsQuotes)
            return false;
        field = m_text.mid(m_place + 1, p - m_place - 1);
        field.replace(QStringLiteral("\"\""), QStringLiteral("\""));
        m_place = p + 1;
        return true;
    }

    bool isSeparator(int index) const
    {
        return m_text.at(index) == QLatin1Char('\t') || m_text.at(index) == QLatin1Char('\n');
    }

    const QString& m_text;
    const Progress& m_progress;
    int m_place = 0;
    int m_fields = 0;
};

} // namespace

CellValue& CellGrid::at(int row, int column)
{
    return cells[index(row, column, columns)];
}

const CellValue& CellGrid::at(int row, int column) const
{
    return cells[index(row, column, columns)];
}

CsvShape csvShape(const QByteArray& csv)
{
    CsvShape shape;
    qint64 fields = 1;
    bool isQuoted = false;
    for (const char c : csv) {
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && c == ',') {
            ++fields;
        } else if (!isQuoted && c == '\n') {
            shape.columns = shape.rows == 0 ? fields : shape.columns;
            if (fields > shape.columns)
                return {};
            ++shape.rows;
            fields = 1;
        }
    }
    shape.columns = shape.rows == 0 ? fields : shape.columns;
    if (fields > shape.columns)
        return {};
    shape.rows += fields == shape.columns ? 1 : 0;
    shape.isReadable = !csv.isEmpty();
    return shape;
}

CellGrid gridOfText(const QString& text, const Progress& progress)
{
    QString plain = text;
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    plain.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const std::vector<QStringList> rows = TabbedText(plain, progress).rows();
    CellGrid grid;
    grid.rows = static_cast<int>(rows.size());
    for (const QStringList& row : rows)
        grid.columns = std::max(grid.columns, row.size());
    if (qint64(grid.rows) * grid.columns > maxPasteCells)
        return grid;
    grid.cells.resize(index(grid.rows, 0, grid.columns));
    for (int row = 0; row < grid.rows; ++row) {
        const QStringList& fields = rows[static_cast<std::size_t>(row)];
        for (int column = 0; column < fields.size(); ++column)
            grid.cells[index(row, column, grid.columns)] = cellValue(fields.at(column));
        report(progress, row, grid.rows);
    }
    return grid;
}

void copyToClipboard(const CellGrid& grid)
{
    ZvTable table(static_cast<unsigned long long>(grid.rows),
                  static_cast<unsigned long long>(grid.columns), libzvutil::ZvVariant());
    for (int row = 0; row < grid.rows; ++row) {
        for (int column = 0; column < grid.columns; ++column)
            table.value(static_cast<unsigned long long>(row),
                        static_cast<unsigned long long>(column)) = grid.at(row, column);
    }
    ZvClipboard().setData(std::move(table));
}

ClipboardCells::ClipboardCells(const Progress& progress)
{
    const ZvClipboard clipboard;
    if (clipboard.hasType(ZvInternalMimeType::table)) {
        m_table.emplace(clipboard.tableData());
        m_rows = static_cast<qint64>(m_table->rows());
        m_columns = static_cast<qint64>(m_table->columns());
        return;
    }
    // The library returns a table without storage for text that it can't read, and such a table
    // can't be told from others. So the text is checked first, and these very bytes are read later.
    m_csv = clipboard.hasTableData() ? csvBytes() : QByteArray();
    const CsvShape shape = csvShape(m_csv);
    if (shape.isReadable) {
        // The library reads a line end at the end of a single column as an empty row.
        const bool isEndEmpty = shape.columns == 1 && m_csv.endsWith('\n');
        m_rows = shape.rows - (isEndEmpty ? 1 : 0);
        m_columns = shape.columns;
        return;
    }
    m_csv.clear();
    m_text = gridOfText(clipboard.stringData().toQString(), progress);
    m_rows = m_text.rows;
    m_columns = m_text.columns;
}

bool ClipboardCells::isEmpty() const
{
    return m_rows == 0 || m_columns == 0;
}

qint64 ClipboardCells::rows() const
{
    return m_rows;
}

qint64 ClipboardCells::columns() const
{
    return m_columns;
}

CellGrid ClipboardCells::grid(const Progress& progress) const
{
    if (m_table)
        return gridOfTable(*m_table, ownValue, progress);
    if (m_csv.isEmpty())
        return m_text;
    QMimeData data;
    data.setData(csvFormat, m_csv);
    CellGrid grid = gridOfTable(
        ZvClipboardData(&data).csvData(),
        [](const QVariant& value) { return cellValue(value.toString()); }, progress);
    grid.rows = static_cast<int>(m_rows);
    return grid;
}

} // namespace workbench
