#include "output/Pages.h"

#include "common/number_text.h"

#include <QColor>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>

#include <algorithm>

namespace workbench {

namespace {

constexpr double pointsPerInch = 72;
constexpr double nameSize = 11;
constexpr double smallSize = 8;
constexpr double gap = 8;
constexpr double lineWidth = 0.5;

const QColor& dim()
{
    static const QColor colour(0x55, 0x55, 0x55);
    return colour;
}

double heightOf(const QFont& font)
{
    return QFontMetricsF(font).height();
}

} // namespace

Paper Paper::of(const QPagedPaintDevice& device)
{
    return {QSizeF(device.width(), device.height()), double(device.logicalDpiX())};
}

Pages::Pages(const PageTitle& title, const Paper& paper)
    : m_title(title)
    , m_paper(paper)
    , m_nameFont(sized(QFontDatabase::systemFont(QFontDatabase::GeneralFont), nameSize))
    , m_smallFont(sized(QFontDatabase::systemFont(QFontDatabase::GeneralFont), smallSize))
    , m_body(QPointF(), paper.size)
{
    m_nameFont.setBold(true);
    const double small = heightOf(m_smallFont);
    const double top = heightOf(m_nameFont) + (title.file.isEmpty() ? 0 : small) + points(2 * gap);
    // A page too small for both would have no room left, and an endless number of pages.
    m_body.setTop(std::min(top, m_body.height() / 3));
    m_body.setBottom(m_body.bottom() - std::min(small + points(gap), paper.size.height() / 3));
}

Pages::~Pages() = default;

void Pages::paint(QPainter& painter, int page) const
{
    painter.save();
    paintTitle(painter);
    painter.setFont(m_smallFont);
    painter.setPen(dim());
    painter.drawText(QRectF(QPointF(), m_paper.size), Qt::AlignRight | Qt::AlignBottom,
                     tr("Page %1 of %2").arg(numberText(page + 1), numberText(count())));
    painter.restore();
    painter.save();
    painter.setPen(Qt::black);
    paintBody(painter, page);
    painter.restore();
}

void Pages::paintTitle(QPainter& painter) const
{
    const QFontMetricsF nameMetrics(m_nameFont);
    const double width = m_paper.size.width();
    // Letters of other scripts may be higher than the font says; they are shown all the same.
    const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;
    QRectF line(0, 0, width, nameMetrics.height());
    painter.setPen(Qt::black);
    painter.setFont(m_nameFont);
    painter.drawText(line, flags, nameMetrics.elidedText(m_title.name, Qt::ElideRight, width));
    if (!m_title.file.isEmpty()) {
        const QFontMetricsF metrics(m_smallFont);
        line = QRectF(0, line.bottom(), width, metrics.height());
        painter.setPen(dim());
        painter.setFont(m_smallFont);
        painter.drawText(line, flags, metrics.elidedText(m_title.file, Qt::ElideMiddle, width));
    }
    const double below = line.bottom() + points(gap / 2);
    painter.setPen(QPen(dim(), points(lineWidth)));
    painter.drawLine(QPointF(0, below), QPointF(width, below));
}

const QRectF& Pages::body() const
{
    return m_body;
}

double Pages::points(double points) const
{
    return points * m_paper.dotsPerInch / pointsPerInch;
}

QFont Pages::sized(const QFont& font, double points) const
{
    QFont result = font;
    result.setPixelSize(std::max(1, qRound(this->points(points))));
    return result;
}

} // namespace workbench
