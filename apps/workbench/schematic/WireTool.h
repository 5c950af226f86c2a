#pragma once

#include <QPoint>
#include <QVector>

namespace workbench {

/// The wire that is being drawn, in steps of the grid: from corner to corner, each time first
/// across and then up or down.
class WireTool
{
public:
    bool isDrawing() const;

    void begin(const QPoint& start);
    /// Adds the corners on the way to \p corner, which becomes the end.
    void extend(const QPoint& corner);
    /// Sets where the mouse is; the wire is shown up to that point.
    void setPointer(const QPoint& pointer);
    /// Returns the last corner. Call only while a wire is being drawn.
    const QPoint& end() const;

    /// Returns the corners, and those on the way to \p target.
    QVector<QPoint> pointsTo(const QPoint& target) const;
    /// Returns the points to show: the corners, and those on the way to the mouse.
    QVector<QPoint> shownPoints() const;

    /// Ends the wire. Returns its corners without those in the middle of a straight line, or none
    /// if no wire was being drawn.
    QVector<QPoint> finish();

private:
    QVector<QPoint> m_corners;
    QPoint m_pointer;
};

} // namespace workbench
