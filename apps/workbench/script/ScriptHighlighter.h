#pragma once

#include <QSyntaxHighlighter>

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
};

} // namespace workbench
