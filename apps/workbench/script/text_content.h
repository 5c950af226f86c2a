#pragma once

#include <QByteArray>
#include <QString>
#include <QTextDocument>

namespace workbench {

/// What a text file holds, and how it is written.
struct TextContent
{
    QString text; ///< lines end in LF
    bool isLatin1 = false; ///< the file isn't UTF-8, and each byte is a character
    bool hasWindowsLines = false; ///< all lines end in CR LF
    bool hasMixedLines = false; ///< some lines end in CR LF, others in LF
    bool isEditable = true; ///< the editor keeps all characters as they are
};

/// Reads a text file. Text that isn't UTF-8 is read as Latin-1, which has a character for each byte, so that
/// saving gives the same bytes.
TextContent textContent(const QByteArray& bytes);

/// Returns the bytes of a file. Throws `FileError` if a character can't be written as Latin-1.
QByteArray bytesOf(const TextContent& content);

/// Returns the document's text. `toPlainText` would replace non-breaking spaces.
QString textOf(const QTextDocument& document);

} // namespace workbench
