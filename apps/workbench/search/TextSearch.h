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
    int position; ///< where in \p text the text begins
};

/// Looks for a text in the lines of UTF-8, piece by piece, so that neither the size of a file nor
/// that of a line matters.
class TextSearch
{
public:
    /// \p text must not be empty.
    TextSearch(const QString& text, Qt::CaseSensitivity caseSensitivity);

    /// Reads \p file, from where it is, to its end. Each line that contains the text is handed to
    /// \p found once. \p mayGoOn is asked behind each piece of some 100 KB; with false the search
    /// ends. Sequences that aren't UTF-8 are read as replacement characters.
    void run(QIODevice& file, const std::function<void(const FoundLine&)>& found,
             const std::function<bool()>& mayGoOn);

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

/// Whether the first bytes of a file are those of text: there is no NUL in them.
bool looksLikeText(const QByteArray& firstBytes);

} // namespace workbench
