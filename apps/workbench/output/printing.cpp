#include "output/printing.h"

#include "output/OutputContent.h"

#include <zvworkbench/FileError.h>

#include <QBuffer>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <numeric>
#include <vector>

namespace workbench {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::Printing)
};

constexpr double margin = 15; // millimetres

std::vector<int> orderOf(const PageRange& range, int count)
{
    const int first = std::clamp(range.first, 1, count);
    const int last = std::clamp(range.last, first, count);
    std::vector<int> order(static_cast<std::size_t>(last - first + 1));
    std::iota(order.begin(), order.end(), first - 1);
    if (range.isReversed)
        std::reverse(order.begin(), order.end());
    return order;
}

} // namespace

QPageLayout usualPages(QPageLayout::Orientation orientation)
{
    const bool isLetter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return {QPageSize(isLetter ? QPageSize::Letter : QPageSize::A4), orientation,
            QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter};
}

void paintPages(QPagedPaintDevice& device, const OutputContent& content, const PageRange& range,
                const Progress& progress)
{
    const std::unique_ptr<Pages> pages = content.pages(Paper::of(device), progress);
    QPainter painter;
    if (!painter.begin(&device))
        throw FileError(Texts::tr("The printer does not answer."));
    const std::vector<int> order = orderOf(range, pages->count());
    const int count = static_cast<int>(order.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !device.newPage())
            throw FileError(Texts::tr("The printer does not take another page."));
        if (!progress(i, count))
            throw Stopped();
        pages->paint(painter, order[static_cast<std::size_t>(i)]);
    }
    if (!painter.end())
        throw FileError(Texts::tr("The printer did not take all pages."));
}

QByteArray pdfOf(const OutputContent& content, const QString& title, const QPageLayout& layout,
                 const PageRange& range, const Progress& progress)
{
    QByteArray bytes;
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setPageLayout(layout);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("Workbench"));
        paintPages(writer, content, range, progress);
    }
    return bytes;
}

} // namespace workbench
