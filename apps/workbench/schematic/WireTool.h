#pragma once

#include <QPoint>
#include <QVector>

namespace workbench {

/// The wire that is being drawn, in steps of the grid: from corner to corner, each time first across and
/// then up or down.
class WireTool
{
public:
    bool isDrawing() const;

    void begin(const QPoint& start);
    /// Adds the corners to \p corner, which becomes the end.
    void extend(const QPoint& corner);
    /// Where the mouse is, up to which the wire is shown.
    void setPointer(const QPoint& pointer);
    /// Where the last corner is. Only while a wire is being drawn.
    const QPoint& end() const;

    /// The corners with those that lead to \p target.
    QVector<QPoint> pointsTo(const QPoint& target) const;
    /// What is shown: the corners, and what leads to the pointer.
    QVector<QPoint> shownPoints() const;

    /// Ends the wire and returns its corners without those that lie on a straight line; empty if there
    /// was none.
    QVector<QPoint> finish();

private:
    QVector<QPoint> m_corners;
    QPoint m_pointer;
};

} // namespace workbench
