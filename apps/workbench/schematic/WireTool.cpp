#include "schematic/WireTool.h"

#include "schematic/Schematic.h"

#include <algorithm>
#include <utility>

namespace workbench {

bool WireTool::isDrawing() const
{
    return !m_corners.isEmpty();
}

void WireTool::begin(const QPoint& start)
{
    m_corners = {start};
    m_pointer = start;
}

void WireTool::extend(const QPoint& corner)
{
    m_corners = pointsTo(corner);
    m_pointer = corner;
}

void WireTool::setPointer(const QPoint& pointer)
{
    m_pointer = pointer;
}

const QPoint& WireTool::end() const
{
    return m_corners.constLast();
}

QVector<QPoint> WireTool::pointsTo(const QPoint& target) const
{
    QVector<QPoint> points = m_corners;
    points.append({target.x(), points.constLast().y()});
    points.append(target);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

QVector<QPoint> WireTool::shownPoints() const
{
    return pointsTo(m_pointer);
}

QVector<QPoint> WireTool::finish()
{
    return simplified(std::exchange(m_corners, {}));
}

} // namespace workbench
