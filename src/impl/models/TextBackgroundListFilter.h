#pragma once

#include "impl/models/AbstractBackgroundListFilter.h"

#include <QRegExp>
#include <QString>

#include <optional>

/// Accepts the rows whose text in the first column contains a search text. `*`, `?`, `[`, `]` and
/// the backslash in that mean what they mean to `QRegExp` as a wildcard pattern; case counts.
class TextBackgroundListFilter : public AbstractBackgroundListFilter
{
    Q_OBJECT

public:
    TextBackgroundListFilter(int interval, QObject* parent);
    explicit TextBackgroundListFilter(QObject* parent);
    ~TextBackgroundListFilter() override;

    /// Begins a pass. Any text will do; it takes no more time than a short one, but for rows that are
    /// as long as itself.
    void setSearchString(const QString& text);

    bool acceptsRow(int row) override;
    void searchStarted() override;
    bool criteriaPending() override;

private:
    void setPattern(const QString& pattern);

    QString m_pattern;
    /// What the text has to contain, if the pattern says no more than that.
    std::optional<QString> m_plainText;
    QRegExp m_regExp;
    std::optional<QString> m_pendingPattern;
};
