#include "common/edit_icons.h"

#include "common/line_icon.h"

#include <initializer_list>

namespace workbench {

namespace {

using Points = std::initializer_list<QPointF>;

void addLine(QPainterPath& path, Points points)
{
    const QPointF* point = points.begin();
    path.moveTo(*point);
    while (++point != points.end())
        path.lineTo(*point);
}

/// Returns an arrow that bends back to the left.
QPainterPath bentArrow()
{
    QPainterPath path;
    addLine(path, {{9, 5}, {4, 10}, {9, 15}});
    path.moveTo(4, 10);
    path.lineTo(14, 10);
    path.cubicTo(21, 10, 21, 19, 14, 19);
    path.lineTo(9, 19);
    return path;
}

/// Returns a row at the top and one at the bottom, with room for a sign between them.
QPainterPath rows()
{
    QPainterPath path;
    path.addRect(3, 2, 18, 4);
    path.addRect(3, 18, 18, 4);
    return path;
}

} // namespace

QIcon openIcon()
{
    QPainterPath path;
    addLine(path, {{5, 19}, {3, 19}, {3, 5}, {9, 5}, {11, 8}, {18, 8}, {18, 11}});
    addLine(path, {{3, 19}, {7, 11}, {22, 11}, {18, 19}, {3, 19}});
    return lineIcon(path);
}

QIcon saveIcon()
{
    QPainterPath path;
    addLine(path, {{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}, {4, 4}});
    addLine(path, {{8, 4}, {8, 9}, {15, 9}, {15, 4}});
    addLine(path, {{7, 20}, {7, 14}, {17, 14}, {17, 20}});
    return lineIcon(path);
}

QIcon runIcon()
{
    QPainterPath path;
    addLine(path, {{7, 4}, {19, 12}, {7, 20}, {7, 4}});
    return lineIcon(path);
}

QIcon stopIcon()
{
    QPainterPath path;
    path.addRect(6, 6, 12, 12);
    return lineIcon(path);
}

QIcon undoIcon()
{
    return lineIcon(bentArrow());
}

QIcon redoIcon()
{
    return lineIcon(QTransform(-1, 0, 0, 1, 24, 0).map(bentArrow()));
}

QIcon cutIcon()
{
    QPainterPath path;
    addLine(path, {{7, 3}, {15.5, 16}});
    addLine(path, {{17, 3}, {8.5, 16}});
    path.addEllipse(QPointF(7, 18), 2.6, 2.6);
    path.addEllipse(QPointF(17, 18), 2.6, 2.6);
    return lineIcon(path);
}

QIcon copyIcon()
{
    QPainterPath path;
    path.addRect(9, 8, 11, 13);
    addLine(path, {{6, 16}, {4, 16}, {4, 3}, {15, 3}, {15, 5}});
    return lineIcon(path);
}

QIcon pasteIcon()
{
    QPainterPath path;
    addLine(path, {{9, 5}, {4, 5}, {4, 21}, {20, 21}, {20, 5}, {15, 5}});
    path.addRect(9, 3, 6, 4);
    addLine(path, {{8, 12}, {16, 12}});
    addLine(path, {{8, 16}, {16, 16}});
    return lineIcon(path);
}

QIcon insertRowIcon()
{
    QPainterPath path = rows();
    addLine(path, {{8, 12}, {16, 12}});
    addLine(path, {{12, 8}, {12, 16}});
    return lineIcon(path);
}

QIcon removeRowIcon()
{
    QPainterPath path = rows();
    addLine(path, {{6, 12}, {18, 12}});
    return lineIcon(path);
}

QIcon rotateIcon()
{
    QPainterPath path;
    path.arcMoveTo(4, 4, 16, 16, 20);
    path.arcTo(4, 4, 16, 16, 20, 310);
    addLine(path, {{20, 4}, {20, 9.5}, {14.5, 9.5}});
    return lineIcon(path);
}

QIcon removeIcon()
{
    QPainterPath path;
    addLine(path, {{4, 7}, {20, 7}});
    addLine(path, {{9, 7}, {9, 4}, {15, 4}, {15, 7}});
    addLine(path, {{6, 7}, {7, 20}, {17, 20}, {18, 7}});
    addLine(path, {{10, 11}, {10, 16}});
    addLine(path, {{14, 11}, {14, 16}});
    return lineIcon(path);
}

QIcon fitIcon()
{
    QPainterPath path;
    addLine(path, {{4, 9}, {4, 4}, {9, 4}});
    addLine(path, {{15, 4}, {20, 4}, {20, 9}});
    addLine(path, {{20, 15}, {20, 20}, {15, 20}});
    addLine(path, {{9, 20}, {4, 20}, {4, 15}});
    path.addRect(8.5, 8.5, 7, 7);
    return lineIcon(path);
}

QIcon pointerIcon()
{
    QPainterPath path;
    addLine(path,
            {{6, 3},
             {6, 18},
             {10, 14.5},
             {12.5, 20.5},
             {15, 19.5},
             {12.5, 13.5},
             {17.5, 13.5},
             {6, 3}});
    return lineIcon(path);
}

} // namespace workbench
