#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace workbench {

/// Colours scripts in an editor, in the colours of the current style.
class ScriptHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    /// Creates the highlighter as a child of \p document.
    explicit ScriptHighlighter(QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;

private:
    void takeColours();

    QTextCharFormat m_keyword;
    QTextCharFormat m_string;
    QTextCharFormat m_comment;
};

} // namespace workbench
