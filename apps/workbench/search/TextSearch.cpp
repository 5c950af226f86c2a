#include "search/TextSearch.h"

#include <QIODevice>

#include <algorithm>

namespace workbench {

namespace {

constexpr int pieceSize = 128 * 1024;
/// The number of bytes above which a line is searched in pieces.
constexpr int maxLineLength = 1024 * 1024;
constexpr int shownBefore = 60;
constexpr int shownBehind = 200;
constexpr int maxBytesPerUnit = 3;

/// Returns the largest index, up to \p at, at which the bytes can be cut between two characters.
int characterStart(const QByteArray& bytes, int at)
{
    const auto isContinuation = [&bytes](int i) { return (uchar(bytes[i]) & 0xC0U) == 0x80U; };
    const int least = std::max(at - maxBytesPerUnit, 0);
    int start = at;
    while (start > least && start < bytes.size() && isContinuation(start))
        --start;
    return start;
}

} // namespace

TextSearch::TextSearch(const QString& text, Qt::CaseSensitivity caseSensitivity)
    : m_text(text)
    , m_matcher(text, caseSensitivity)
{
}

void TextSearch::run(QIODevice& file, const std::function<void(const FoundLine&)>& found,
                     const std::function<bool()>& proceed)
{
    m_waiting.clear();
    m_line = 1;
    m_isLineFound = false;
    bool isAtEnd = false;
    while (!isAtEnd && proceed()) {
        const QByteArray read = file.read(pieceSize);
        isAtEnd = read.isEmpty();
        m_waiting += read;
        searchPiece(QString::fromUtf8(takePiece(isAtEnd)), found);
    }
}

/// Takes what can be searched now: whole lines, or a part of a very long one. The end of such a
/// part is searched again with the next part, since the text may begin there.
QByteArray TextSearch::takePiece(bool isAtEnd)
{
    int taken = isAtEnd ? m_waiting.size() : m_waiting.lastIndexOf('\n') + 1;
    int kept = taken;
    if (taken == 0 && m_waiting.size() > maxLineLength) {
        taken = characterStart(m_waiting, m_waiting.size() - 1);
        kept = characterStart(m_waiting, std::max(taken - maxBytesPerUnit * m_text.size(), 0));
    }
    QByteArray piece = m_waiting.left(taken);
    m_waiting.remove(0, kept);
    return piece;
}

void TextSearch::searchPiece(const QString& piece,
                             const std::function<void(const FoundLine&)>& found)
{
    int lineStart = 0;
    int from = 0;
    for (;;) {
        const int position = m_matcher.indexIn(piece, from);
        const int end = position < 0 ? piece.size() : position;
        for (int feed = piece.indexOf(QLatin1Char('\n'), lineStart); feed >= 0 && feed < end;
             feed = piece.indexOf(QLatin1Char('\n'), lineStart)) {
            ++m_line;
            m_isLineFound = false;
            lineStart = feed + 1;
        }
        if (position < 0)
            return;
        if (!m_isLineFound)
            found(foundLine(piece, position, lineStart));
        m_isLineFound = true;
        const int feed = piece.indexOf(QLatin1Char('\n'), position);
        if (feed < 0)
            return;
        from = feed;
    }
}

FoundLine TextSearch::foundLine(const QString& piece, int position, int lineStart) const
{
    const int feed = piece.indexOf(QLatin1Char('\n'), position);
    const int lineEnd = feed < 0 ? piece.size() : feed;
    int begin = lineStart;
    while (begin < position && piece[begin].isSpace())
        ++begin;
    begin = std::max(begin, position - shownBefore);
    const int end = std::min(lineEnd, position + m_text.size() + shownBehind);
    QString text = piece.mid(begin, end - begin);
    while (text.endsWith(QLatin1Char('\r')))
        text.chop(1);
    return {m_line, text, position - begin};
}

bool looksLikeText(const QByteArray& firstBytes)
{
    return !firstBytes.contains('\0');
}

} // namespace workbench
