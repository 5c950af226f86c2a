#include "output/TablePages.h"

#include "common/number_text.h"

#include <zvworkbench/FileError.h>

#include <QColor>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace workbench {

namespace {

constexpr double textSize = 9; // points, as all below
constexpr double padding = 3;
constexpr double rowPadding = 1.5;
constexpr double gridWidth = 0.4;
constexpr double leading = 1.1;
constexpr double leastColumn = 60;
constexpr double usualColumn = 150;
constexpr int measuredRows = 1'000;

const QColor grid(0xAA, 0xAA, 0xAA);
const QColor headingGround(0xEE, 0xEE, 0xEE);
const QColor dim(0x66, 0x66, 0x66);

QTextOption optionFor(Qt::Alignment alignment)
{
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

/// Breaks the text of \p layout into lines, and returns their number.
int breakIntoLines(QTextLayout& layout, double width)
{
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width);
    layout.endLayout();
    return layout.lineCount();
}

/// Returns a text as QTextLayout breaks it into lines.
QString laidOut(QString text)
{
    return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

/// Returns the width of the longest line.
double widthOf(const QString& text, const QFontMetricsF& metrics)
{
    double width = 0;
    for (const QString& line : text.split(QLatin1Char('\n')))
        width = std::max(width, metrics.horizontalAdvance(line));
    return std::ceil(width) + 1;
}

QFont bold(QFont font)
{
    font.setBold(true);
    return font;
}

/// Returns the widths of the widest text of each column, among the first rows.
std::vector<double> textWidths(const PrintedTable& table, const QFont& font)
{
    const QFontMetricsF plain(font);
    const QFontMetricsF heavy(bold(font));
    std::vector<double> widths;
    for (int column = 0; column < table.columnCount(); ++column) {
        double width = table.hasHeadings() ? widthOf(table.heading(column), heavy) : 0;
        for (int row = 0; row < std::min(table.rowCount(), measuredRows); ++row) {
            const bool isStrong = table.look(row, column) == PrintedTable::Look::Strong;
            if (!table.isOneCell(row))
                width = std::max(width, widthOf(table.text(row, column), isStrong ? heavy : plain));
        }
        widths.push_back(width);
    }
    return widths;
}

double sumOf(const std::vector<double>& numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), 0.0);
}

std::vector<double> limited(std::vector<double> widths, double limit)
{
    for (double& width : widths)
        width = std::min(width, limit);
    return widths;
}

/// Returns the limit of widths at which they fill \p room.
double limitFor(std::vector<double> widths, double room)
{
    std::sort(widths.begin(), widths.end());
    double limit = room;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        limit = room / double(widths.size() - i);
        if (widths[i] > limit)
            break;
        room -= widths[i];
    }
    return limit;
}

} // namespace

TablePages::TablePages(const PageTitle& title, const Paper& paper,
                       std::unique_ptr<PrintedTable> table, const Progress& progress)
    : Pages(title, paper)
    , m_table(std::move(table))
    , m_font(sized(m_table->font(), textSize))
    , m_lineHeight(std::ceil(QFontMetricsF(m_font).height() * leading))
    , m_padding(points(padding))
    , m_rowPadding(m_table->hasHeadings() ? points(rowPadding) : 0)
    , m_numberWidth(QFontMetricsF(m_font).horizontalAdvance(numberText(m_table->rowCount()))
                    + 2 * m_padding)
{
    makeStrips();
    breakIntoPages(progress);
}

int TablePages::count() const
{
    return static_cast<int>(m_places.size());
}

double TablePages::naturalWidth(const PrintedTable& table)
{
    constexpr int scale = 10; // a font of a few pixels has no exact widths
    QFont font = table.font();
    font.setPixelSize(scale * int(textSize));
    const QFontMetricsF metrics(font);
    return (sumOf(textWidths(table, font))
            + metrics.horizontalAdvance(numberText(table.rowCount())))
        / scale
        + 2 * padding * (table.columnCount() + 1);
}

QFont TablePages::fontOf(PrintedTable::Look look) const
{
    QFont font = m_font;
    font.setBold(look == PrintedTable::Look::Strong);
    font.setItalic(look == PrintedTable::Look::Comment);
    font.setStrikeOut(look == PrintedTable::Look::Disabled);
    return font;
}

/// Distributes the columns: side by side if all have room there, or else on strips one after the other.
void TablePages::makeStrips()
{
    std::vector<double> widths = textWidths(*m_table, m_font);
    for (double& width : widths)
        width += 2 * m_padding;
    const double room = std::max(body().width() - m_numberWidth, 1.0);
    const double limit = limitFor(widths, room);
    const bool isEnough = sumOf(limited(widths, points(leastColumn))) <= room;
    widths = limited(widths, std::min(room, isEnough ? limit : points(usualColumn)));
    double used = room;
    for (int column = 0; column < m_table->columnCount(); ++column) {
        const double width = widths[static_cast<std::size_t>(column)];
        constexpr double rounding = 0.5;
        if (column == 0 || used + width > room + rounding) {
            m_strips.push_back({column, {}, 1});
            used = 0;
        }
        m_strips.back().widths.push_back(width);
        used += width;
    }
    const int most = std::max(1, static_cast<int>(body().height() / 3 / m_lineHeight));
    for (Strip& strip : m_strips) {
        for (int i = 0; m_table->hasHeadings() && i < static_cast<int>(strip.widths.size()); ++i) {
            const double width = strip.widths[static_cast<std::size_t>(i)] - 2 * m_padding;
            const int lines = linesOf(m_table->heading(strip.first + i), bold(m_font), width);
            strip.headingLines = std::max(strip.headingLines, std::min(lines, most));
        }
    }
}

int TablePages::linesOf(const QString& text, const QFont& font, double width) const
{
    // Most texts have one line, which is known without breaking them.
    if (text.isEmpty()
        || (!text.contains(QLatin1Char('\n'))
            && QFontMetricsF(font).horizontalAdvance(text) <= width))
        return 1;
    QTextLayout layout(laidOut(text), font);
    layout.setTextOption(optionFor(Qt::AlignLeft));
    return breakIntoLines(layout, width);
}

/// Returns the number of cells that a row has in a strip.
int TablePages::cellsOf(const Strip& strip, int row) const
{
    if (m_table->isOneCell(row))
        return strip.first == 0 ? 1 : 0;
    return static_cast<int>(strip.widths.size());
}

double TablePages::textWidth(const Strip& strip, int row, int column) const
{
    const double cell = m_table->isOneCell(row) ? widthOf(strip) - m_numberWidth
                                                : strip.widths[static_cast<std::size_t>(column)];
    return std::max(cell - 2 * m_padding, 1.0);
}

int TablePages::linesOf(const Strip& strip, int row) const
{
    int lines = 1;
    for (int i = 0; i < cellsOf(strip, row); ++i) {
        const int column = strip.first + i;
        lines = std::max(lines,
                         linesOf(m_table->text(row, column), fontOf(m_table->look(row, column)),
                                 textWidth(strip, row, i)));
    }
    return lines;
}

double TablePages::heightOf(int lines) const
{
    return lines * m_lineHeight + 2 * m_rowPadding;
}

double TablePages::widthOf(const Strip& strip) const
{
    return m_numberWidth + sumOf(strip.widths);
}

/// Returns the room for rows below the headings.
double TablePages::roomOf(const Strip& strip) const
{
    return body().height() - (m_table->hasHeadings() ? heightOf(strip.headingLines) : 0);
}

void TablePages::breakIntoPages(const Progress& progress)
{
    const int rows = m_table->rowCount();
    const int strips = static_cast<int>(m_strips.size());
    requireFewPages(double(rows) * strips * heightOf(1) / body().height());
    for (std::size_t s = 0; s < m_strips.size(); ++s) {
        const Strip& strip = m_strips[s];
        const double room = roomOf(strip);
        const int most = std::max(1, static_cast<int>((room - 2 * m_rowPadding) / m_lineHeight));
        double used = 0;
        m_places.push_back({s, 0, 0});
        for (int row = 0; row < rows; ++row) {
            report(progress, static_cast<int>(s) * rows + row, strips * rows);
            int lines = linesOf(strip, row);
            if (used > 0 && used + heightOf(std::min(lines, most)) > room) {
                m_places.push_back({s, row, 0});
                used = 0;
            }
            for (int line = most; lines > most; lines -= most, line += most) {
                m_places.push_back({s, row, line});
                used = 0;
            }
            used += heightOf(lines);
            requireFewPages(double(m_places.size()));
        }
    }
}

void TablePages::requireFewPages(double pages)
{
    if (pages > maxPages)
        throw FileError(tr("It would need more than %1 pages.").arg(numberText(maxPages)));
}

void TablePages::paintBody(QPainter& painter, int page) const
{
    const Place& begin = m_places[static_cast<std::size_t>(page)];
    const Strip& strip = m_strips[begin.strip];
    Place end{begin.strip, m_table->rowCount(), 0};
    if (page + 1 < count() && m_places[static_cast<std::size_t>(page) + 1].strip == begin.strip)
        end = m_places[static_cast<std::size_t>(page) + 1];
    double top = body().top();
    if (m_table->hasHeadings()) {
        paintHeadings(painter, strip);
        top += heightOf(strip.headingLines);
    }
    int first = begin.line;
    for (int row = begin.row; row < end.row || (row == end.row && first < end.line); ++row) {
        const int last = row == end.row ? end.line : linesOf(strip, row);
        paintRow(painter, strip, row, first, last - first, top);
        top += heightOf(last - first);
        first = 0;
    }
}

void TablePages::paintHeadings(QPainter& painter, const Strip& strip) const
{
    const double height = heightOf(strip.headingLines);
    const QRectF area(0, body().top(), widthOf(strip), height);
    painter.fillRect(area, headingGround);
    double left = m_numberWidth;
    for (int i = 0; i < static_cast<int>(strip.widths.size()); ++i) {
        const double width = strip.widths[static_cast<std::size_t>(i)];
        paintText(painter, m_table->heading(strip.first + i), bold(m_font),
                  QRectF(left, area.top(), width, height), Qt::AlignLeft, 0, strip.headingLines);
        left += width;
    }
    paintLines(painter, strip, static_cast<int>(strip.widths.size()), area);
}

void TablePages::paintRow(QPainter& painter, const Strip& strip, int row, int firstLine, int lines,
                          double top) const
{
    const QRectF area(0, top, widthOf(strip), heightOf(lines));
    if (firstLine == 0) {
        painter.setPen(dim);
        paintText(painter, numberText(row + 1), m_font,
                  QRectF(0, top, m_numberWidth, area.height()), Qt::AlignRight, 0, 1);
        painter.setPen(Qt::black);
    }
    double left = m_numberWidth;
    for (int i = 0; i < cellsOf(strip, row); ++i) {
        const int column = strip.first + i;
        const PrintedTable::Look look = m_table->look(row, column);
        const double width = textWidth(strip, row, i) + 2 * m_padding;
        const bool isNumber = m_table->isNumber(row, column);
        paintText(painter, m_table->text(row, column), fontOf(look),
                  QRectF(left, top, width, area.height()),
                  isNumber ? Qt::AlignRight : Qt::AlignLeft, firstLine, lines);
        left += width;
    }
    if (m_table->hasHeadings())
        paintLines(painter, strip, cellsOf(strip, row), area);
}

/// Paints the lines around a row, and between its cells.
void TablePages::paintLines(QPainter& painter, const Strip& strip, int cells,
                            const QRectF& area) const
{
    painter.save();
    painter.setPen(QPen(grid, points(gridWidth)));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area);
    double left = m_numberWidth;
    for (int i = 0; i < cells; ++i) {
        painter.drawLine(QPointF(left, area.top()), QPointF(left, area.bottom()));
        left += strip.widths[static_cast<std::size_t>(i)];
    }
    painter.restore();
}

void TablePages::paintText(QPainter& painter, const QString& text, const QFont& font,
                           const QRectF& area, Qt::Alignment alignment, int firstLine,
                           int lines) const
{
    if (text.isEmpty())
        return;
    QTextLayout layout(laidOut(text), font);
    // QTextLayout puts a text that is written from the right to the left of its line all the same.
    layout.setTextOption(optionFor(text.isRightToLeft() ? Qt::AlignRight : alignment));
    const int count = breakIntoLines(layout, area.width() - 2 * m_padding);
    const double ascent = QFontMetricsF(font).ascent();
    for (int i = firstLine; i < std::min(count, firstLine + lines); ++i) {
        // Letters that another font has may be higher, and would move the lines of their cell alone.
        QTextLine line = layout.lineAt(i);
        const double top = (i - firstLine) * m_lineHeight + ascent - line.ascent();
        line.setPosition(QPointF(0, top));
        line.draw(&painter, area.topLeft() + QPointF(m_padding, m_rowPadding));
    }
}

} // namespace workbench
