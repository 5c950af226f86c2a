#pragma once

#include "schematic/Schematic.h"

#include <QPoint>
#include <QSet>

#include <map>

namespace workbench {

/// An end of a wire that lies on a pin.
struct WireEnd
{
    bool isMoved = false; ///< it moves with the pin's symbol
    bool canSlide =
        false; ///< nothing else meets the part of the wire that ends here, so that it may move, too
};

/// The ends of a wire.
struct WireEnds
{
    WireEnd first;
    WireEnd last;
};

/// Returns the wires, by their ids, that follow when the elements \p moved are moved: those that aren't moved
/// themselves, and have an end on a pin of a moved symbol alone.
std::map<int, WireEnds> followersOf(const Schematic& schematic, const QSet<int>& moved);

/// Returns the points of a wire whose ends have moved by \p steps, with all parts across or down. A wire that would
/// have no length, or too many points, stays as it is.
QVector<QPoint> stretched(const QVector<QPoint>& points, const WireEnds& ends, const QPoint& steps);

} // namespace workbench
