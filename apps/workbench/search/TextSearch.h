#pragma once

#include <QByteArray>
#include <QString>
#include <QStringMatcher>

#include <functional>

class QIODevice;

namespace workbench {

/// A line that contains the text.
struct FoundLine
{
    int number; ///< counted from 1
    QString text; ///< the line, or as much of it around the text as is worth showing
    int position; ///< index in \p text at which the text that is searched for begins
};

/// Searches the lines of UTF-8 for a text, piece by piece, so that neither the size of a file nor
/// that of a line matters.
class TextSearch
{
public:
    /// Creates a search for \p text, which must not be empty.
    TextSearch(const QString& text, Qt::CaseSensitivity caseSensitivity);

    /// Reads \p file from its present position to its end. Passes each line that contains the text
    /// to \p found, once. Calls \p proceed before each piece of some 100 KB, and stops if it
    /// returns false. Sequences that aren't UTF-8 are read as replacement characters.
    void run(QIODevice& file, const std::function<void(const FoundLine&)>& found,
             const std::function<bool()>& proceed);

private:
    QByteArray takePiece(bool isAtEnd);
    void searchPiece(const QString& piece, const std::function<void(const FoundLine&)>& found);
    FoundLine foundLine(const QString& piece, int position, int lineStart) const;

    QString m_text;
    QStringMatcher m_matcher;
    QByteArray m_waiting;
    int m_line = 1;
    bool m_isLineFound = false;
};

/// Returns whether the first bytes of a file look like text: they contain no NUL.
bool looksLikeText(const QByteArray& firstBytes);

} // namespace workbench
