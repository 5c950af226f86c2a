#include "search/SearchPattern.h"

#include <algorithm>

namespace workbench {

namespace {

/// Returns \p text with replacement characters for halves of surrogate pairs, which the expression engine can't
/// read. All other characters keep their places.
QString readable(const QString& text)
{
    QString result = text;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (!c.isSurrogate())
            continue;
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

/// Returns how \p options find \p text, as an expression.
QString expressionOf(const QString& text, const SearchOptions& options)
{
    const QString plain = options.isExpression ? text : QRegularExpression::escape(text);
    return options.isWholeWords ? QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(plain) : plain;
}

} // namespace

const char* PatternTooSlow::what() const noexcept
{
    return "the expression takes too many steps";
}

SearchPattern::SearchPattern(const QString& text, const SearchOptions& options)
    : m_isEmpty(text.isEmpty())
    , m_isExpression(options.isExpression)
{
    const auto flags = QRegularExpression::UseUnicodePropertiesOption
        | (options.isCaseSensitive ? QRegularExpression::NoPatternOption
                                   : QRegularExpression::CaseInsensitiveOption);
    // The user's own text is checked alone, or the message would count the characters that stand around it here.
    const QRegularExpression own(
        options.isExpression ? text : QRegularExpression::escape(readable(text)), flags);
    if (!own.isValid()) {
        m_fault = tr("%1 (character %2)").arg(own.errorString()).arg(own.patternErrorOffset() + 1);
        return;
    }
    m_expression = QRegularExpression(QStringLiteral("(*NOTEMPTY)(*LIMIT_MATCH=100000)")
                                          + expressionOf(readable(text), options),
                                      flags);
    if (!m_expression.isValid())
        m_fault = m_expression.errorString();
}

bool SearchPattern::isEmpty() const
{
    return m_isEmpty;
}

const QString& SearchPattern::fault() const
{
    return m_fault;
}

std::optional<TextPart> SearchPattern::next(const QString& text, int from) const
{
    const QRegularExpressionMatch match = matchAt(readable(text), from);
    if (!match.hasMatch())
        return {};
    return TextPart{match.capturedStart(), match.capturedLength()};
}

std::optional<TextPart> SearchPattern::last(const QString& text, int end) const
{
    const QString searched = readable(text);
    std::optional<TextPart> found;
    for (int from = 0; from < end;) {
        const QRegularExpressionMatch match = matchAt(searched, from);
        if (!match.hasMatch() || match.capturedStart() >= end)
            break;
        found = TextPart{match.capturedStart(), match.capturedLength()};
        from = match.capturedEnd();
    }
    return found;
}

QString SearchPattern::replacement(const QString& text, const TextPart& part,
                                   const QString& replacement) const
{
    return expanded(matchAt(readable(text), part.position), replacement);
}

QString SearchPattern::replaced(const QString& text, const QString& replacement,
                                qint64& count) const
{
    const QString searched = readable(text);
    QString result;
    int from = 0;
    for (;;) {
        const QRegularExpressionMatch match = matchAt(searched, from);
        if (!match.hasMatch())
            break;
        result += text.midRef(from, match.capturedStart() - from);
        result += expanded(match, replacement);
        from = match.capturedEnd();
        ++count;
    }
    return from == 0 ? text : result + text.midRef(from);
}

QRegularExpressionMatch SearchPattern::matchAt(const QString& text, int from) const
{
    const QRegularExpressionMatch match =
        m_expression.match(text, from, QRegularExpression::NormalMatch,
                           QRegularExpression::DontCheckSubjectStringMatchOption);
    if (!match.isValid())
        throw PatternTooSlow();
    return match;
}

QString SearchPattern::expanded(const QRegularExpressionMatch& match,
                                const QString& replacement) const
{
    if (!m_isExpression || !replacement.contains(QLatin1Char('\\')))
        return replacement;
    QString result;
    for (int i = 0; i < replacement.size(); ++i) {
        const QChar c = replacement.at(i);
        if (c != QLatin1Char('\\') || i + 1 == replacement.size()) {
            result += c;
            continue;
        }
        const QChar next = replacement.at(++i);
        if (next >= QLatin1Char('0') && next <= QLatin1Char('9'))
            result += match.captured(next.digitValue());
        else if (next == QLatin1Char('n'))
            result += QLatin1Char('\n');
        else if (next == QLatin1Char('t'))
            result += QLatin1Char('\t');
        else
            result += next;
    }
    return result;
}

} // namespace workbench
