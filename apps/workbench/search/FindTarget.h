#pragma once

#include "documents/ProgressBox.h"
#include "search/SearchPattern.h"

#include <QString>

#include <optional>
#include <vector>

namespace workbench {

/// A place in the texts of a document.
struct TextPlace
{
    int row = 0; ///< line of a text, or row of a table
    int column = 0; ///< always 0 in a text
    int position = 0; ///< in UTF-16 units
};

struct FoundText
{
    TextPlace place;
    int length = 0;
    bool hasWrapped = false; ///< the search went over the end, and on from the other one
};

/// A text that takes the place of a part of another.
struct TextChange
{
    TextPlace place;
    int length;
    QString text;
};

/// What a find bar searches: the lines of a text, or the cells of a table.
class FindTarget
{
public:
    virtual ~FindTarget() = default;

    virtual int rowCount() const = 0;
    /// Returns how many texts a row has.
    virtual int columnCount(int row) const = 0;
    virtual QString text(int row, int column) const = 0;

    /// Returns whether texts are selected as a whole: a search goes on with the next text, and a replacement
    /// changes all matches of a text.
    virtual bool selectsWholeTexts() const = 0;
    virtual TextPlace selectionStart() const = 0;
    virtual TextPlace selectionEnd() const = 0;
    /// Returns the selected text if it is worth searching for.
    virtual QString selectedText() const = 0;
    virtual void select(const FoundText& found) = 0;

    virtual bool isReadOnly() const = 0;
    /// Makes \p changes as one step that can be undone. They are in the order of their places.
    virtual void change(const QString& step, const std::vector<TextChange>& changes) = 0;
};

/// Returns the first match at \p from or behind it, or else the first of all. Throws `PatternTooSlow`, and `Stopped`
/// if \p progress returns false.
std::optional<FoundText> findNext(const FindTarget& target, const SearchPattern& pattern,
                                  const TextPlace& from, const Progress& progress);

/// Returns the last match that begins in front of \p end, or else the last of all; for the rest as `findNext`.
std::optional<FoundText> findPrevious(const FindTarget& target, const SearchPattern& pattern,
                                      const TextPlace& end, const Progress& progress);

/// What a replacement of all matches changes.
struct Replacements
{
    std::vector<TextChange> changes;
    qint64 count = 0; ///< number of matches
    bool isTooMuch =
        false; ///< the texts would grow beyond 50 million characters; there are no changes
};

/// Returns what becomes of all matches; for the rest as `findNext`.
Replacements replacementsOf(const FindTarget& target, const SearchPattern& pattern,
                            const QString& replacement, const Progress& progress);

} // namespace workbench
