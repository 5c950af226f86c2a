#pragma once

#include "documents/ProgressBox.h"
#include "output/Pages.h"

#include <QFont>
#include <QString>

#include <memory>
#include <vector>

namespace workbench {

/// A table to be printed.
class PrintedTable
{
public:
    enum class Look { Plain, Strong, Comment, Disabled };

    virtual ~PrintedTable() = default;

    virtual int rowCount() const = 0;
    virtual int columnCount() const = 0;
    virtual QString text(int row, int column) const = 0;
    virtual Look look(int row, int column) const = 0;
    virtual bool isNumber(int row, int column) const = 0;
    /// Returns whether the first cell has the whole row for itself.
    virtual bool isOneCell(int row) const = 0;
    /// Returns the heading of a column. Without any, the table has neither headings nor lines.
    virtual QString heading(int column) const = 0;
    virtual bool hasHeadings() const = 0;
    virtual QFont font() const = 0;
};

/// A table on pages, with its headings on each and the numbers of rows. Columns that are too many for the width of the
/// paper go on further pages; a row that is higher than a page, too.
class TablePages : public Pages
{
public:
    /// Throws `FileError` if there would be more than `maxPages`, and `Stopped` if \p progress returns false.
    TablePages(const PageTitle& title, const Paper& paper, std::unique_ptr<PrintedTable> table,
               const Progress& progress);

    int count() const override;

    /// Returns the width in points that no text would have to be broken for.
    static double naturalWidth(const PrintedTable& table);

protected:
    void paintBody(QPainter& painter, int page) const override;

private:
    /// Columns that stand side by side.
    struct Strip
    {
        int first;
        std::vector<double> widths;
        int headingLines;
    };
    /// The place where a page begins.
    struct Place
    {
        std::size_t strip;
        int row;
        int line;
    };
    QFont fontOf(PrintedTable::Look look) const;
    void makeStrips();
    int linesOf(const QString& text, const QFont& font, double width) const;
    double textWidth(const Strip& strip, int row, int column) const;
    int cellsOf(const Strip& strip, int row) const;
    int linesOf(const Strip& strip, int row) const;
    double roomOf(const Strip& strip) const;
    void breakIntoPages(const Progress& progress);
    static void requireFewPages(double pages);
    double widthOf(const Strip& strip) const;
    double heightOf(int lines) const;
    void paintHeadings(QPainter& painter, const Strip& strip) const;
    void paintRow(QPainter& painter, const Strip& strip, int row, int firstLine, int lines,
                  double top) const;
    void paintLines(QPainter& painter, const Strip& strip, int cells, const QRectF& area) const;
    void paintText(QPainter& painter, const QString& text, const QFont& font, const QRectF& area,
                   Qt::Alignment alignment, int firstLine, int lines) const;

    std::unique_ptr<PrintedTable> m_table;
    QFont m_font;
    double m_lineHeight;
    double m_padding; ///< on both sides of a text
    double m_rowPadding; ///< above and below the lines of a row
    double m_numberWidth;
    std::vector<Strip> m_strips;
    std::vector<Place> m_places; ///< the beginning of each page
};

} // namespace workbench
