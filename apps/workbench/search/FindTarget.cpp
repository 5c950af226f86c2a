#include "search/FindTarget.h"

#include <algorithm>

namespace workbench {

namespace {

constexpr qint64 maxReplacedLength = 50'000'000;

} // namespace

std::optional<FoundText> findNext(const FindTarget& target, const SearchPattern& pattern,
                                  const TextPlace& from, const Progress& progress)
{
    const int rows = target.rowCount();
    // The row that the search begins in comes twice: its end at first, and its beginning at last.
    for (int i = 0; i <= rows && rows > 0; ++i) {
        const int row = (from.row + i) % rows;
        for (int column = i == 0 ? from.column : 0; column < target.columnCount(row); ++column) {
            const bool isFirst = i == 0 && column == from.column;
            if (const auto part =
                    pattern.next(target.text(row, column), isFirst ? from.position : 0))
                return FoundText{{row, column, part->position}, part->length, from.row + i >= rows};
        }
        report(progress, i, rows);
    }
    return {};
}

std::optional<FoundText> findPrevious(const FindTarget& target, const SearchPattern& pattern,
                                      const TextPlace& end, const Progress& progress)
{
    const int rows = target.rowCount();
    for (int i = 0; i <= rows && rows > 0; ++i) {
        const int row = (end.row - i + rows) % rows;
        const int columns = target.columnCount(row);
        for (int column = i == 0 ? std::min(end.column, columns - 1) : columns - 1; column >= 0;
             --column) {
            const QString text = target.text(row, column);
            const bool isFirst = i == 0 && column == end.column;
            if (const auto part = pattern.last(text, isFirst ? end.position : text.size()))
                return FoundText{{row, column, part->position}, part->length, i > end.row};
        }
        report(progress, i, rows);
    }
    return {};
}

Replacements replacementsOf(const FindTarget& target, const SearchPattern& pattern,
                            const QString& replacement, const Progress& progress)
{
    Replacements result;
    qint64 length = 0;
    for (int row = 0; row < target.rowCount(); ++row) {
        for (int column = 0; column < target.columnCount(row); ++column) {
            const QString text = target.text(row, column);
            const qint64 before = result.count;
            const QString changed = pattern.replaced(text, replacement, result.count);
            if (result.count == before)
                continue;
            length += changed.size();
            if (length > maxReplacedLength)
                return {{}, 0, true};
            result.changes.push_back({{row, column, 0}, text.size(), changed});
        }
        report(progress, row, target.rowCount());
    }
    return result;
}

} // namespace workbench
