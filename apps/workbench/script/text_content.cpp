#include "script/text_content.h"

#include <zvworkbench/FileError.h>

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <array>

namespace workbench {

namespace {

constexpr int utf8 = 106;
constexpr QChar maxLatin1(0xFF);

/// The characters that the editor doesn't keep: it takes a CR, for example, for the end of a line, and saving
/// would write it as one.
constexpr std::array<ushort, 5> lostCharacters = {'\r', 0, 0x2029, 0xFDD0, 0xFDD1};

} // namespace

TextContent textContent(const QByteArray& bytes)
{
    TextContent content;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    content.text =
        QTextCodec::codecForMib(utf8)->toUnicode(bytes.constData(), bytes.size(), &state);
    content.isLatin1 = state.invalidChars > 0 || state.remainingChars > 0;
    if (content.isLatin1)
        content.text = QString::fromLatin1(bytes);
    const int windowsLines = content.text.count(QLatin1String("\r\n"));
    const int lines = content.text.count(QLatin1Char('\n'));
    content.hasWindowsLines = windowsLines > 0 && windowsLines == lines;
    content.hasMixedLines = windowsLines > 0 && windowsLines < lines;
    content.text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    content.isEditable =
        std::none_of(lostCharacters.begin(), lostCharacters.end(),
                     [&content](ushort lost) { return content.text.contains(QChar(lost)); });
    return content;
}

QByteArray bytesOf(const TextContent& content)
{
    QString text = content.text;
    if (content.hasWindowsLines)
        text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    if (!content.isLatin1)
        return text.toUtf8();
    const auto foreign =
        std::find_if(text.cbegin(), text.cend(), [](QChar c) { return c > maxLatin1; });
    if (foreign != text.cend()) {
        const int position = static_cast<int>(foreign - text.cbegin());
        const int length = foreign->isHighSurrogate() ? 2 : 1;
        throw FileError(
            QCoreApplication::translate("workbench::TextContent",
                                        "Latin-1 has no “%1”, which is in line %2. Convert the "
                                        "text to UTF-8, or take the character out.")
                .arg(text.mid(position, length))
                .arg(text.leftRef(position).count(QLatin1Char('\n')) + 1));
    }
    return text.toLatin1();
}

QString textOf(const QTextDocument& document)
{
    return document.toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

} // namespace workbench
