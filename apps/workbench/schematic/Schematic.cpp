#include "schematic/Schematic.h"

#include <QHash>

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <vector>

namespace workbench {

namespace {

struct KindNames
{
    const char* name;
    const char* prefix; ///< beginning of references: "R"
};

KindNames namesOf(SymbolKind kind)
{
    switch (kind) {
    case SymbolKind::Resistor:
        return {"Resistor", "R"};
    case SymbolKind::Capacitor:
        return {"Capacitor", "C"};
    case SymbolKind::Diode:
        return {"Diode", "D"};
    case SymbolKind::Source:
        return {"Source", "V"};
    case SymbolKind::Ground:
        return {"Ground", "GND"};
    case SymbolKind::Chip:
        break;
    }
    return {"Chip", "U"};
}

void addLine(QPainterPath& path, double x1, double y1, double x2, double y2)
{
    path.moveTo(x1, y1);
    path.lineTo(x2, y2);
}

SymbolShape resistor()
{
    SymbolShape shape;
    shape.body.addRect(-20, -7, 40, 14);
    addLine(shape.lines, -30, 0, -20, 0);
    addLine(shape.lines, 20, 0, 30, 0);
    shape.pins = {{-3, 0}, {3, 0}};
    return shape;
}

SymbolShape capacitor()
{
    SymbolShape shape;
    addLine(shape.lines, -20, 0, -4, 0);
    addLine(shape.lines, -4, -13, -4, 13);
    addLine(shape.lines, 4, -13, 4, 13);
    addLine(shape.lines, 4, 0, 20, 0);
    shape.pins = {{-2, 0}, {2, 0}};
    return shape;
}

SymbolShape diode()
{
    SymbolShape shape;
    shape.body.addPolygon(QPolygonF({{-9, -10}, {9, 0}, {-9, 10}, {-9, -10}}));
    addLine(shape.lines, -20, 0, -9, 0);
    addLine(shape.lines, 9, -10, 9, 10);
    addLine(shape.lines, 9, 0, 20, 0);
    shape.pins = {{-2, 0}, {2, 0}};
    return shape;
}

SymbolShape source()
{
    SymbolShape shape;
    shape.body.addEllipse(QPointF(0, 0), 17, 17);
    addLine(shape.lines, 0, -30, 0, -17);
    addLine(shape.lines, 0, 17, 0, 30);
    addLine(shape.lines, -4, -8, 4, -8);
    addLine(shape.lines, 0, -12, 0, -4);
    addLine(shape.lines, -4, 8, 4, 8);
    shape.pins = {{0, -3}, {0, 3}};
    return shape;
}

SymbolShape ground()
{
    SymbolShape shape;
    addLine(shape.lines, 0, 0, 0, 10);
    addLine(shape.lines, -12, 10, 12, 10);
    addLine(shape.lines, -7, 15, 7, 15);
    addLine(shape.lines, -2.5, 20, 2.5, 20);
    shape.pins = {{0, 0}};
    return shape;
}

SymbolShape chip()
{
    SymbolShape shape;
    shape.body.addRoundedRect(-40, -40, 80, 80, 3, 3);
    for (const int y : {-20, 0, 20}) {
        addLine(shape.lines, -50, y, -40, y);
        addLine(shape.lines, 40, y, 50, y);
        shape.pins += {{-5, y / gridStep}, {5, y / gridStep}};
    }
    // The circle marks the first pin.
    shape.body.addEllipse(QPointF(-33, -33), 2, 2);
    return shape;
}

bool isStraight(const QPoint& a, const QPoint& b)
{
    return a.x() == b.x() || a.y() == b.y();
}

/// The straight parts of wires along one line of the grid, as intervals of the coordinate that
/// varies.
class Intervals
{
public:
    void add(int a, int b)
    {
        m_begins.push_back(std::min(a, b));
        m_ends.push_back(std::max(a, b));
    }

    void sort()
    {
        std::sort(m_begins.begin(), m_begins.end());
        std::sort(m_ends.begin(), m_ends.end());
    }

    /// Returns how many intervals have \p coordinate within them, not at an end. Call `sort`
    /// before.
    int around(int coordinate) const
    {
        const auto begun = std::lower_bound(m_begins.begin(), m_begins.end(), coordinate);
        const auto ended = std::upper_bound(m_ends.begin(), m_ends.end(), coordinate);
        return static_cast<int>((begun - m_begins.begin()) - (ended - m_ends.begin()));
    }

private:
    std::vector<int> m_begins;
    std::vector<int> m_ends;
};

/// Counts what meets at a point, except straight parts that pass it.
struct Meeting
{
    int ends = 0; ///< ends of wires, and pins
    int corners = 0;
};

using Meetings = QHash<QPair<int, int>, Meeting>;

Meeting& at(Meetings& meetings, const QPoint& point)
{
    return meetings[{point.x(), point.y()}];
}

Meetings meetingsOf(const Schematic& schematic)
{
    Meetings meetings;
    for (const Symbol& symbol : schematic.symbols) {
        for (const QPoint& pin : shapeOf(symbol.kind).pins)
            ++at(meetings, symbol.position + rotated(pin, symbol.rotation)).ends;
    }
    for (const Wire& wire : schematic.wires) {
        ++at(meetings, wire.points.first()).ends;
        ++at(meetings, wire.points.last()).ends;
        for (int i = 1; i + 1 < wire.points.size(); ++i)
            ++at(meetings, wire.points.at(i)).corners;
    }
    return meetings;
}

} // namespace

bool operator==(const Symbol& a, const Symbol& b)
{
    const auto values = [](const Symbol& symbol) {
        return std::tie(symbol.id, symbol.kind, symbol.reference, symbol.value, symbol.position,
                        symbol.rotation);
    };
    return values(a) == values(b);
}

bool operator==(const Wire& a, const Wire& b)
{
    return a.id == b.id && a.points == b.points;
}

bool operator==(const Schematic& a, const Schematic& b)
{
    return a.symbols == b.symbols && a.wires == b.wires;
}

const SymbolShape& shapeOf(SymbolKind kind)
{
    static const std::array<SymbolShape, symbolKinds.size()> shapes = {
        resistor(), capacitor(), diode(), source(), ground(), chip()};
    return shapes[static_cast<std::size_t>(kind)];
}

QString kindName(SymbolKind kind)
{
    return QString::fromLatin1(namesOf(kind).name);
}

bool kindOfName(const QString& name, SymbolKind& kind)
{
    const auto found = std::find_if(symbolKinds.begin(), symbolKinds.end(),
                                    [&name](SymbolKind k) { return kindName(k) == name; });
    if (found == symbolKinds.end())
        return false;
    kind = *found;
    return true;
}

qint64 highestNumber(const Schematic& schematic, SymbolKind kind)
{
    const QString prefix = QString::fromLatin1(namesOf(kind).prefix);
    int highest = 0;
    for (const Symbol& symbol : schematic.symbols) {
        if (symbol.reference.startsWith(prefix))
            highest = std::max(highest, symbol.reference.midRef(prefix.size()).toInt());
    }
    return highest;
}

QString referenceOf(SymbolKind kind, qint64 number)
{
    return QString::fromLatin1(namesOf(kind).prefix) + QString::number(number);
}

QString nextReference(const Schematic& schematic, SymbolKind kind)
{
    return referenceOf(kind, highestNumber(schematic, kind) + 1);
}

QPoint rotated(const QPoint& point, int rotation)
{
    switch (rotation) {
    case 90:
        return {-point.y(), point.x()};
    case 180:
        return -point;
    case 270:
        return {point.y(), -point.x()};
    default:
        return point;
    }
}

bool isWithinReach(const QPoint& point)
{
    return std::abs(point.x()) <= farthestStep && std::abs(point.y()) <= farthestStep;
}

QString wireFault(const QVector<QPoint>& points)
{
    if (points.size() < 2)
        return Schematic::tr("A wire has fewer than two points.");
    for (int i = 1; i < points.size(); ++i) {
        if (points.at(i) == points.at(i - 1) || !isStraight(points.at(i), points.at(i - 1)))
            return Schematic::tr(
                       "A wire is neither horizontal nor vertical from point %1 to the next.")
                .arg(i);
    }
    return {};
}

QVector<QPoint> simplified(const QVector<QPoint>& points)
{
    QVector<QPoint> result;
    for (const QPoint& point : points) {
        if (!result.isEmpty() && result.last() == point)
            continue;
        const int n = result.size();
        const bool isMiddle = n > 1
            && ((result.at(n - 2).x() == result.at(n - 1).x() && point.x() == result.at(n - 1).x()
                 && (point.y() > result.at(n - 1).y())
                     == (result.at(n - 1).y() > result.at(n - 2).y()))
                || (result.at(n - 2).y() == result.at(n - 1).y()
                    && point.y() == result.at(n - 1).y()
                    && (point.x() > result.at(n - 1).x())
                        == (result.at(n - 1).x() > result.at(n - 2).x())));
        if (isMiddle)
            result.last() = point;
        else
            result.append(point);
    }
    return result;
}

QVector<QPoint> junctionsOf(const Schematic& schematic)
{
    QHash<int, Intervals> rows;
    QHash<int, Intervals> columns;
    for (const Wire& wire : schematic.wires) {
        for (int i = 1; i < wire.points.size(); ++i) {
            const QPoint a = wire.points.at(i - 1);
            const QPoint b = wire.points.at(i);
            if (a.y() == b.y())
                rows[a.y()].add(a.x(), b.x());
            else
                columns[a.x()].add(a.y(), b.y());
        }
    }
    for (QHash<int, Intervals>* const lines : {&rows, &columns}) {
        for (Intervals& line : *lines)
            line.sort();
    }
    QVector<QPoint> junctions;
    const Meetings meetings = meetingsOf(schematic);
    for (auto it = meetings.begin(); it != meetings.end(); ++it) {
        const auto [x, y] = it.key();
        const int passing = it->corners + rows.value(y).around(x) + columns.value(x).around(y);
        if (it->ends > 0 && it->ends + 2 * passing >= 3)
            junctions.append({x, y});
    }
    return junctions;
}

} // namespace workbench
