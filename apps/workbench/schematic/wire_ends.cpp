#include "schematic/wire_ends.h"

#include <QHash>

#include <algorithm>
#include <set>
#include <utility>

namespace workbench {

namespace {

using Place = QPair<int, int>;

Place placeOf(const QPoint& point)
{
    return {point.x(), point.y()};
}

/// The pins at one place.
struct Contacts
{
    int movedPins = 0;
    int otherPins = 0;
};

/// What meets where. The places are sorted in rows and in columns, too, since a part of a wire lies in one of them.
struct Meetings
{
    QHash<Place, Contacts> contacts;
    std::set<std::pair<int, int>> byRow; // y, x
    std::set<std::pair<int, int>> byColumn; // x, y

    Contacts& at(const QPoint& point)
    {
        byRow.emplace(point.y(), point.x());
        byColumn.emplace(point.x(), point.y());
        return contacts[placeOf(point)];
    }
};

Meetings meetingsOf(const Schematic& schematic, const QSet<int>& moved)
{
    Meetings meetings;
    for (const Symbol& symbol : schematic.symbols) {
        for (const QPoint& pin : shapeOf(symbol.kind).pins) {
            Contacts& at = meetings.at(symbol.position + rotated(pin, symbol.rotation));
            ++(moved.contains(symbol.id) ? at.movedPins : at.otherPins);
        }
    }
    for (const Wire& wire : schematic.wires) {
        meetings.at(wire.points.first());
        meetings.at(wire.points.last());
    }
    return meetings;
}

/// Returns whether anything meets the part of a wire from \p end to \p corner, but for what meets its end.
bool isMet(const QPoint& end, const QPoint& corner, const Meetings& meetings)
{
    const bool isAcross = end.y() == corner.y();
    const std::set<std::pair<int, int>>& places = isAcross ? meetings.byRow : meetings.byColumn;
    const int line = isAcross ? end.y() : end.x();
    const auto [from, to] =
        isAcross ? std::minmax({end.x(), corner.x()}) : std::minmax({end.y(), corner.y()});
    const int own = isAcross ? end.x() : end.y();
    auto place = places.lower_bound({line, from});
    if (place != places.end() && *place == std::pair(line, own))
        ++place;
    return place != places.end() && place->first == line && place->second <= to
        && place->second != own;
}

WireEnd endOf(const QPoint& end, const QPoint& corner, const Meetings& meetings)
{
    const Contacts at = meetings.contacts.value(placeOf(end));
    if (at.movedPins == 0 || at.otherPins > 0)
        return {};
    return {true, !isMet(end, corner, meetings)};
}

/// Returns \p points with the first moved.
QVector<QPoint> withFirstMoved(QVector<QPoint> points, bool canSlide, const QPoint& steps)
{
    const QPoint first = points.at(0) + steps;
    const QPoint next = points.at(1);
    const bool isAcross = points.at(0).y() == next.y();
    points[0] = first;
    if (isAcross ? first.y() == next.y() : first.x() == next.x())
        return points;
    const bool hasCorner = points.size() > 2
        && (isAcross ? next.x() == points.at(2).x() : next.y() == points.at(2).y());
    if (canSlide && hasCorner)
        points[1] = isAcross ? QPoint(next.x(), first.y()) : QPoint(first.x(), next.y());
    else
        points.insert(1, isAcross ? QPoint(first.x(), next.y()) : QPoint(next.x(), first.y()));
    return points;
}

QVector<QPoint> reversed(const QVector<QPoint>& points)
{
    return QVector<QPoint>(points.crbegin(), points.crend());
}

} // namespace

std::map<int, WireEnds> followersOf(const Schematic& schematic, const QSet<int>& moved)
{
    std::map<int, WireEnds> followers;
    const Meetings meetings = meetingsOf(schematic, moved);
    for (const Wire& wire : schematic.wires) {
        if (moved.contains(wire.id))
            continue;
        const int last = wire.points.size() - 1;
        const WireEnds ends = {endOf(wire.points.first(), wire.points.at(1), meetings),
                               endOf(wire.points.last(), wire.points.at(last - 1), meetings)};
        if (ends.first.isMoved || ends.last.isMoved)
            followers[wire.id] = ends;
    }
    return followers;
}

QVector<QPoint> stretched(const QVector<QPoint>& points, const WireEnds& ends, const QPoint& steps)
{
    QVector<QPoint> result = points;
    if (ends.first.isMoved && ends.last.isMoved && ends.first.canSlide && ends.last.canSlide) {
        for (QPoint& point : result)
            point += steps;
        return result;
    }
    if (ends.first.isMoved)
        result = withFirstMoved(result, ends.first.canSlide, steps);
    if (ends.last.isMoved)
        result = reversed(withFirstMoved(reversed(result), ends.last.canSlide, steps));
    result = simplified(result);
    const bool isWire = result.size() <= maxWirePoints && wireFault(result).isEmpty();
    return isWire ? result : points;
}

} // namespace workbench
