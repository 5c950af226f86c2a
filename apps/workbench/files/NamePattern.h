#pragma once

#include <QString>
#include <QStringMatcher>
#include <QStringView>

namespace workbench {

/// A pattern for the names of files, as a user types it: a text that the name contains, or, with
/// `*` for any characters and `?` for one, a pattern that the whole name matches. Case doesn't
/// matter.
class NamePattern
{
public:
    /// Creates the empty pattern, which every name matches.
    NamePattern() = default;
    explicit NamePattern(const QString& text);

    /// Returns whether \p name matches. Takes time proportional to the product of both lengths at
    /// most.
    bool matches(QStringView name) const;

private:
    QString m_text;
    QStringMatcher m_plain;
    bool m_isWildcard = false;
};

/// Returns the part of a native path after its last separator.
QStringView fileNameOf(QStringView path);

/// Returns the part of a native path before its last separator; a root keeps the separator.
QStringView folderOf(QStringView path);

} // namespace workbench
