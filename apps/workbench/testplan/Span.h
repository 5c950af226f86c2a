#pragma once

#include <vector>

namespace workbench {

/// Consecutive rows, or consecutive columns.
struct Span
{
    int first;
    int count;
};

/// Spans in the order of the table, which neither overlap nor meet.
using Spans = std::vector<Span>;

/// Sorts \p spans, and merges those that meet or overlap.
Spans united(Spans spans);

/// Returns the number of rows or columns in all spans.
int countOf(const Spans& spans);

/// Returns the row or column in front of which \p span is after a move by one: up or left if
/// \p step is -1, down or right if it is 1. Qt's models take destinations in this form.
int destinationOf(const Span& span, int step);

/// Returns whether there are spans, and all can move by one in a table of \p total rows or columns.
bool canMove(const Spans& spans, int step, int total);

} // namespace workbench
