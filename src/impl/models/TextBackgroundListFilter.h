#pragma once

#include "impl/models/AbstractBackgroundListFilter.h"

#include <QRegExp>
#include <QString>

#include <optional>

/// Accepts the rows whose text in the first column contains a search text, in which `*`, `?`, `[`,
/// `]` and the backslash have their meaning in wildcard patterns of `QRegExp`. Case counts.
class TextBackgroundListFilter : public AbstractBackgroundListFilter
{
    Q_OBJECT

public:
    TextBackgroundListFilter(int interval, QObject* parent);
    explicit TextBackgroundListFilter(QObject* parent);
    ~TextBackgroundListFilter() override;

    /// Sets the search text, which may be any text, and begins a pass. Long texts take no more time
    /// per row than short ones, except for rows of at least their length.
    void setSearchString(const QString& text);

    bool acceptsRow(int row) override;
    void searchStarted() override;
    bool criteriaPending() override;

private:
    void setPattern(const QString& pattern);

    QString m_pattern;
    /// The text that a row has to contain, if the pattern has no wildcards.
    std::optional<QString> m_plainText;
    QRegExp m_regExp;
    std::optional<QString> m_pendingPattern;
};
