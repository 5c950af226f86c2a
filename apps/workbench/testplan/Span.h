#pragma once

#include <vector>

namespace workbench {

/// Rows, or columns, that follow each other.
struct Span
{
    int first;
    int count;
};

/// In the order of the table, with others between them.
using Spans = std::vector<Span>;

/// Sorts \p spans, and makes one of those that meet or overlap.
Spans united(Spans spans);

/// How many rows or columns they are in all.
int countOf(const Spans& spans);

/// The row or column in front of which \p span comes to stand when it moves by one: up or left if
/// \p step is -1, down or right if it is 1. This is the destination that Qt's models take.
int destinationOf(const Span& span, int step);

/// Whether there are any, and all can move by one in a table of \p total rows or columns.
bool canMove(const Spans& spans, int step, int total);

} // namespace workbench
