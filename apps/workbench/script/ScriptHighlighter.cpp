#include "script/ScriptHighlighter.h"

#include "common/style_options.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleManager.h>

#include <QColor>
#include <QSet>

namespace workbench {

namespace {

/// The state at the end of a line: within a comment of several lines or not.
enum State { Outside = 0, WithinComment = 1 };

bool isKeyword(const QString& word)
{
    static const QSet<QString> keywords = {
        QStringLiteral("break"),     QStringLiteral("case"),    QStringLiteral("catch"),
        QStringLiteral("class"),     QStringLiteral("const"),   QStringLiteral("continue"),
        QStringLiteral("default"),   QStringLiteral("delete"),  QStringLiteral("do"),
        QStringLiteral("else"),      QStringLiteral("extends"), QStringLiteral("false"),
        QStringLiteral("finally"),   QStringLiteral("for"),     QStringLiteral("function"),
        QStringLiteral("if"),        QStringLiteral("in"),      QStringLiteral("instanceof"),
        QStringLiteral("let"),       QStringLiteral("new"),     QStringLiteral("null"),
        QStringLiteral("of"),        QStringLiteral("return"),  QStringLiteral("super"),
        QStringLiteral("switch"),    QStringLiteral("this"),    QStringLiteral("throw"),
        QStringLiteral("true"),      QStringLiteral("try"),     QStringLiteral("typeof"),
        QStringLiteral("undefined"), QStringLiteral("var"),     QStringLiteral("void"),
        QStringLiteral("while"),     QStringLiteral("with"),    QStringLiteral("yield"),
    };
    return keywords.contains(word);
}

bool isPartOfWord(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

int endOfWord(const QString& text, int start)
{
    int end = start;
    while (end < text.size() && isPartOfWord(text.at(end)))
        ++end;
    return end;
}

/// Returns the index after the closing quote, or the end of the line if there is none.
int endOfString(const QString& text, int start)
{
    const QChar quote = text.at(start);
    int end = start + 1;
    while (end < text.size() && text.at(end) != quote)
        end += text.at(end) == QLatin1Char('\\') ? 2 : 1;
    return qMin(end + 1, text.size());
}

QTextCharFormat inColour(const QColor& colour)
{
    QTextCharFormat format;
    format.setForeground(pageTextColour(colour));
    return format;
}

} // namespace

ScriptHighlighter::ScriptHighlighter(QTextDocument* document)
    : QSyntaxHighlighter(document)
{
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            [this] {
                takeColours();
                rehighlight();
            });
    takeColours();
}

void ScriptHighlighter::takeColours()
{
    using libzvutil::ZvStyleBrush;
    m_keyword = inColour(styleColour(ZvStyleBrush::AccentD1));
    m_keyword.setFontWeight(QFont::Bold);
    m_string = inColour(styleColour(ZvStyleBrush::Accent));
    m_comment = inColour(libzvutil::ZvStyle::Current().editorColour("Testplan", "CommentText"));
}

void ScriptHighlighter::highlightBlock(const QString& text)
{
    bool isComment = previousBlockState() == WithinComment;
    int position = 0;
    while (position < text.size() || isComment) {
        const QChar c = isComment ? QChar() : text.at(position);
        int end = position + 1;
        if (isComment || text.midRef(position, 2) == QLatin1String("/*")) {
            const int close = text.indexOf(QLatin1String("*/"), isComment ? 0 : position + 2);
            end = close < 0 ? text.size() : close + 2;
            setFormat(position, end - position, m_comment);
            isComment = false;
            if (close < 0) {
                setCurrentBlockState(WithinComment);
                return;
            }
        } else if (text.midRef(position, 2) == QLatin1String("//")) {
            end = text.size();
            setFormat(position, end - position, m_comment);
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\'') || c == QLatin1Char('`')) {
            end = endOfString(text, position);
            setFormat(position, end - position, m_string);
        } else if (isPartOfWord(c)) {
            end = endOfWord(text, position);
            if (isKeyword(text.mid(position, end - position)))
                setFormat(position, end - position, m_keyword);
        }
        position = end;
    }
    setCurrentBlockState(Outside);
}

} // namespace workbench
