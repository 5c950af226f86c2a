#include "schematic/SchematicPages.h"

#include <QPainter>

#include <algorithm>

namespace workbench {

namespace {

constexpr double largestScale =
    1.2; // points per unit of the scene: somewhat larger than on a screen
constexpr double leastLineWidth = 0.25;

} // namespace

SchematicPages::SchematicPages(const PageTitle& title, const Paper& paper,
                               const Schematic& schematic)
    : Pages(title, paper)
    , m_picture(schematic)
{
}

int SchematicPages::count() const
{
    return 1;
}

void SchematicPages::paintBody(QPainter& painter, int /*page*/) const
{
    const QRectF& all = m_picture.bounds();
    const double scale = std::min(
        {body().width() / all.width(), body().height() / all.height(), points(largestScale)});
    painter.translate(body().center());
    painter.scale(scale, scale);
    painter.translate(-all.center());
    m_picture.paint(painter, points(leastLineWidth) / scale, [](int, int) { return true; });
}

} // namespace workbench
