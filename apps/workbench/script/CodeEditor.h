#pragma once

#include <QPlainTextEdit>

namespace workbench {

/// A text editor for scripts: with line numbers, the current line emphasised, a tab of four blanks,
/// and new lines indented like those before them.
class CodeEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CodeEditor(QWidget* parent = nullptr);

    /// Emphasises a line, counted from 1, as wrong, and shows it; none with 0, and none once the user
    /// has made the text longer or shorter.
    void markError(int line);

    /// Goes to the start of a line, counted from 1.
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

    LineNumbers* m_lineNumbers; // a child
    int m_errorLine = 0;
};

} // namespace workbench
