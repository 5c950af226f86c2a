#pragma once

#include <QPlainTextEdit>

namespace workbench {

/// A text editor for scripts: with line numbers, the current line emphasised, a tab of four blanks,
/// and each new line indented like the one before it.
class CodeEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CodeEditor(QWidget* parent = nullptr);

    /// Emphasises a line, counted from 1, as wrong, and scrolls to it. With 0, or once the user has
    /// made the text longer or shorter, no line is emphasised.
    void markError(int line);

    /// Moves the cursor to the start of a line, counted from 1.
    void goToLine(int line);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class LineNumbers;

    int lineNumberWidth() const;
    void paintLineNumbers(QPaintEvent* event);
    void layOut();
    void emphasiseLines();
    bool indentSelection(bool deeper);

    LineNumbers* m_lineNumbers; // owned as a child
    int m_errorLine = 0;
};

} // namespace workbench
