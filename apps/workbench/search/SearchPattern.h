#pragma once

#include <QCoreApplication>
#include <QRegularExpression>
#include <QString>

#include <exception>
#include <optional>

namespace workbench {

/// Thrown when an expression takes too many steps on a text.
class PatternTooSlow : public std::exception
{
public:
    const char* what() const noexcept override;
};

/// A part of a text, in UTF-16 units.
struct TextPart
{
    int position;
    int length; ///< at least 1 for what a pattern has found
};

/// How a text is searched for.
struct SearchOptions
{
    bool isCaseSensitive = false;
    bool isWholeWords = false;
    bool isExpression = false; ///< the text is a regular expression
};

/// A text to search for, or a regular expression. Matches of no characters are none: there would be nothing to
/// show, and no way on.
///
/// An expression that takes more than 100,000 steps on a text is given up, so that none can block the program.
class SearchPattern
{
    Q_DECLARE_TR_FUNCTIONS(workbench::SearchPattern)

public:
    SearchPattern() = default;
    SearchPattern(const QString& text, const SearchOptions& options);

    /// Returns whether there is nothing to search for.
    bool isEmpty() const;
    /// Returns what is wrong with the expression, or an empty text. Call the functions below only if it is empty.
    const QString& fault() const;

    /// Returns the first match that begins at \p from or behind it. Like the functions below, throws
    /// `PatternTooSlow`.
    std::optional<TextPart> next(const QString& text, int from) const;
    /// Returns the last match that begins in front of \p end.
    std::optional<TextPart> last(const QString& text, int end) const;

    /// Returns what takes the place of the match at \p part. In \p replacement for an expression, "\1" stands for
    /// what its first group has matched, "\0" for all, "\n", "\t" and "\\" for a line feed, a tab and a backslash.
    QString replacement(const QString& text, const TextPart& part,
                        const QString& replacement) const;
    /// Returns \p text with all matches replaced, and adds their number to \p count.
    QString replaced(const QString& text, const QString& replacement, qint64& count) const;

private:
    QRegularExpressionMatch matchAt(const QString& text, int from) const;
    QString expanded(const QRegularExpressionMatch& match, const QString& replacement) const;

    QRegularExpression m_expression;
    QString m_fault;
    bool m_isEmpty = true;
    bool m_isExpression = false;
};

} // namespace workbench
