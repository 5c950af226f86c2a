#include "files/NamePattern.h"

#include <QDir>

#include <algorithm>

namespace workbench {

namespace {

/// Returns how many UTF-16 units the character at \p at has.
qsizetype characterSize(QStringView text, qsizetype at)
{
    const bool isPair =
        text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

bool isSame(QChar a, QChar b)
{
    return a == b || a.toCaseFolded() == b.toCaseFolded();
}

bool matchesWildcard(QStringView pattern, QStringView name)
{
    constexpr qsizetype none = -1;
    qsizetype inPattern = 0;
    qsizetype inName = 0;
    // Backtracking only ever returns to the last star, so store its place, and where in the name
    // its match ends.
    qsizetype star = none;
    qsizetype behindStar = 0;
    while (inName < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == QLatin1Char('*')) {
            star = inPattern++;
            behindStar = inName;
        } else if (inPattern < pattern.size() && pattern[inPattern] == QLatin1Char('?')) {
            ++inPattern;
            inName += characterSize(name, inName);
        } else if (inPattern < pattern.size() && isSame(pattern[inPattern], name[inName])) {
            ++inPattern;
            ++inName;
        } else if (star != none) {
            inPattern = star + 1;
            behindStar += characterSize(name, behindStar);
            inName = behindStar;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + inPattern, pattern.end(),
                       [](QChar unit) { return unit == QLatin1Char('*'); });
}

qsizetype lastSeparator(QStringView path)
{
    const QChar* const begin = path.begin();
    const QChar* at = path.end();
    while (at != begin) {
        --at;
        if (*at == QLatin1Char('/') || *at == QDir::separator())
            return at - begin;
    }
    return -1;
}

} // namespace

NamePattern::NamePattern(const QString& text)
    : m_text(text)
    , m_plain(text, Qt::CaseInsensitive)
    , m_isWildcard(text.contains(QLatin1Char('*')) || text.contains(QLatin1Char('?')))
{
}

bool NamePattern::matches(QStringView name) const
{
    if (m_isWildcard)
        return matchesWildcard(m_text, name);
    return m_text.isEmpty() || m_plain.indexIn(name.data(), int(name.size())) >= 0;
}

QStringView fileNameOf(QStringView path)
{
    return path.mid(lastSeparator(path) + 1);
}

QStringView folderOf(QStringView path)
{
    const qsizetype separator = lastSeparator(path);
    return path.left(separator == 0 ? 1 : std::max<qsizetype>(separator, 0));
}

} // namespace workbench
