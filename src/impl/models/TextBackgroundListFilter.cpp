#include "impl/models/TextBackgroundListFilter.h"

#include <QDebug>

#include <algorithm>

namespace {

bool isSpecial(QChar character)
{
    return QStringLiteral("*?[]\\").contains(character);
}

/// Shortens each run of asterisks to two, which match the same: after a backslash the first may be
/// literal, and the others are one wildcard. With thousands of asterisks `QRegExp` would take
/// seconds for a row.
QString shortened(const QString& pattern)
{
    constexpr QChar asterisk = u'*';
    QString result;
    result.reserve(pattern.size());
    for (const QChar character : pattern) {
        const bool isThird = character == asterisk && result.size() >= 2
            && result.back() == asterisk && result[result.size() - 2] == asterisk;
        if (!isThird)
            result += character;
    }
    return result;
}

} // namespace

TextBackgroundListFilter::TextBackgroundListFilter(int interval, QObject* parent)
    : AbstractBackgroundListFilter(interval, parent)
    , m_regExp(QString(), Qt::CaseSensitive, QRegExp::Wildcard)
{
}

TextBackgroundListFilter::TextBackgroundListFilter(QObject* parent)
    : AbstractBackgroundListFilter(parent)
    , m_regExp(QString(), Qt::CaseSensitive, QRegExp::Wildcard)
{
}

TextBackgroundListFilter::~TextBackgroundListFilter() = default;

void TextBackgroundListFilter::setSearchString(const QString& text)
{
    qDebug() << "TBLF setSearchString: " << text;
    m_pendingPattern = u'*' + text + u'*';
    Q_EMIT searchCriteriaChanged();
}

void TextBackgroundListFilter::searchStarted()
{
    if (m_pendingPattern) {
        setPattern(*m_pendingPattern);
        m_pendingPattern.reset();
    }
    qDebug() << "TBLF searchStarted: " << m_pattern;
}

void TextBackgroundListFilter::setPattern(const QString& pattern)
{
    m_pattern = pattern;
    // Strip the asterisks that setSearchString() added on either side.
    const QString text = pattern.mid(1, pattern.size() - 2);
    m_plainText.reset();
    if (std::none_of(text.begin(), text.end(), &isSpecial))
        m_plainText = text;
    else
        m_regExp.setPattern(shortened(pattern));
}

bool TextBackgroundListFilter::criteriaPending()
{
    return m_pendingPattern.has_value();
}

bool TextBackgroundListFilter::acceptsRow(int row)
{
    if (m_pattern.isEmpty())
        return true;
    const QString text =
        sourceModel()->index(row, 0, QModelIndex()).data(Qt::DisplayRole).toString();
    return m_plainText ? text.contains(*m_plainText) : m_regExp.exactMatch(text);
}
