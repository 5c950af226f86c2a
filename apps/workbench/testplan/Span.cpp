#include "testplan/Span.h"

#include <algorithm>

namespace workbench {

Spans united(Spans spans)
{
    std::sort(spans.begin(), spans.end(),
              [](const Span& a, const Span& b) { return a.first < b.first; });
    Spans result;
    for (const Span& span : spans) {
        const int end = result.empty() ? -1 : result.back().first + result.back().count;
        if (span.first > end)
            result.push_back(span);
        else
            result.back().count += std::max(span.first + span.count - end, 0);
    }
    return result;
}

int countOf(const Spans& spans)
{
    int count = 0;
    for (const Span& span : spans)
        count += span.count;
    return count;
}

int destinationOf(const Span& span, int step)
{
    return step < 0 ? span.first - 1 : span.first + span.count + 1;
}

bool canMove(const Spans& spans, int step, int total)
{
    return !spans.empty()
        && (step < 0 ? spans.front().first > 0 : spans.back().first + spans.back().count < total);
}

} // namespace workbench
