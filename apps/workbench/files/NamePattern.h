#pragma once

#include <QString>
#include <QStringMatcher>
#include <QStringView>

namespace workbench {

/// What a user types to find files by their names: a text that the name contains, or, with `*` for any
/// characters and `?` for one, a pattern that the whole name has. Case doesn't matter.
class NamePattern
{
public:
    /// The empty text, which every name contains.
    NamePattern() = default;
    explicit NamePattern(const QString& text);

    /// Takes no more time than the product of both lengths.
    bool matches(QStringView name) const;

private:
    QString m_text;
    QStringMatcher m_plain;
    bool m_isWildcard = false;
};

/// The part of a native path behind its last separator.
QStringView fileNameOf(QStringView path);

/// The part before that, without the separator unless it is a root.
QStringView folderOf(QStringView path);

} // namespace workbench
