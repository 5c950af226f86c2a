#pragma once

#include <QPlainTextEdit>

namespace workbench {

/// A text editor: with line numbers, the current line emphasised, a tab of four blanks, and each new line
/// indented like the one before it.
class CodeEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// What the editor edits; scripts are coloured.
    enum class Content { Script, Text };

    /// The size of the largest text that can be opened again, in bytes of UTF-8. The editor takes about a second to
    /// show so much.
    static constexpr qint64 maxSize = 5'000'000;

    explicit CodeEditor(QWidget* parent = nullptr, Content content = Content::Script);

    /// Emphasises a line, counted from 1, as wrong, and scrolls to it. With 0, or once the user has
    /// made the text longer or shorter, no line is emphasised.
    void markError(int line);

    /// Moves the cursor to the start of a line, counted from 1.
    void goToLine(int line);

    /// Makes the lines of the selection comments of a script, or takes the signs away if all of them are.
    void toggleComment();

    void zoomIn();
    void zoomOut();
    void resetZoom();

Q_SIGNALS:
    /// Emitted when a text isn't pasted, since it is too long.
    void pasteRefused(qint64 size);
    /// Emitted when something isn't inserted that the user has typed, since the text is as long as it can be.
    void typingRefused();

protected:
    void changeEvent(QEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class LineNumbers;

    bool hasRoomFor(qint64 bytes) const;
    bool refuses(qint64 bytes);
    int lineNumberWidth() const;
    void paintLineNumbers(QPaintEvent* event);
    void layOut();
    void emphasiseLines();
    bool indentSelection(bool deeper);
    QTextBlock lastSelectedBlock() const;
    void setZoom(int percent);

    LineNumbers* m_lineNumbers; // owned as a child
    int m_errorLine = 0;
    int m_zoom = 100; // percent
    double m_fullSize = 0; // of the text without zoom, in points; 0 until the user zooms
};

} // namespace workbench
