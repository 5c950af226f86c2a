#include "testplan/plan_csv.h"

#include <zvworkbench/FileError.h>

#include <zvutil/ZvTable.h>

#include <algorithm>

namespace workbench {

namespace {

constexpr int cellsAtOnce = 100'000;
constexpr int maxSize = 1'000'000'000; // bytes; a QByteArray holds no more than twice as many

/// Returns a text of which the library's table makes a field of CSV. The table puts quotes around what contains a
/// comma, and leaves all else as it is.
QString field(QString text)
{
    const bool hasQuotes = text.contains(QLatin1Char('"'));
    if (hasQuotes)
        text.replace(QLatin1Char('"'), QLatin1String("\"\""));
    if (text.contains(QLatin1Char(',')))
        return text;
    // Programs guess from the first row what stands between fields.
    const bool needsQuotes = hasQuotes || std::any_of(text.cbegin(), text.cend(), [](QChar c) {
                                 return c == QLatin1Char('\n') || c == QLatin1Char('\r')
                                     || c == QLatin1Char(';') || c == QLatin1Char('\t');
                             });
    return needsQuotes ? QLatin1Char('"') + text + QLatin1Char('"') : text;
}

/// Returns rows, of which -1 is that of the headings, without a line end after the last one.
QByteArray csvOfRows(const TestPlan& plan, int first, int last)
{
    const int columns = plan.headings.size();
    using Size = unsigned long long;
    ZvTable table(static_cast<Size>(last - first), static_cast<Size>(columns),
                  libzvutil::ZvVariant());
    for (int row = first; row < last; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QString text = row < 0
                ? plan.headings.at(column)
                : cellText(plan.rows[static_cast<std::size_t>(row)].cells.value(column));
            table.value(static_cast<Size>(row - first), static_cast<Size>(column)) =
                QVariant(field(text));
        }
    }
    const libzvutil::ZvString csv = table.toCSV();
    return QByteArray(csv.c_str());
}

} // namespace

QByteArray csvOfPlan(const TestPlan& plan, const Progress& progress)
{
    const int rows = static_cast<int>(plan.rows.size());
    const int atOnce = std::max(1, cellsAtOnce / plan.headings.size());
    QByteArray csv;
    for (int first = -1; first < rows; first += atOnce) {
        if (!progress(first + 1, rows + 1))
            throw Stopped();
        csv += csvOfRows(plan, first, std::min(rows, first + atOnce)) + '\n';
        if (csv.size() > maxSize)
            throw FileError(TestPlan::tr("The CSV file would have more than 1 GB."));
    }
    return csv;
}

} // namespace workbench
