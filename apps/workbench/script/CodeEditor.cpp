#include "script/CodeEditor.h"

#include "common/page_style.h"
#include "common/readable_colour.h"
#include "common/style_options.h"
#include "script/ScriptHighlighter.h"

#include <zvutil/ZvStyle.h>

#include <QColor>
#include <QEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QWheelEvent>

#include <algorithm>
#include <limits>

namespace workbench {

namespace {

constexpr int indentation = 4;
constexpr int numberMargin = 8;
constexpr int zoomStep = 10;
constexpr int minZoom = 50;
constexpr int maxZoom = 400;
constexpr int bytesPerCharacter = 3; // of UTF-8, for a UTF-16 unit
const QString commentSign = QStringLiteral("//");

/// Returns a shade between the page and its text.
QColor currentLineColour()
{
    constexpr double share = 0.07;
    const QColor page = styleColour(libzvutil::ZvStyleBrush::EditorEnabled);
    const QColor text = styleColour(libzvutil::ZvStyleBrush::TextEnabled);
    const auto between = [](double from, double to) { return from + share * (to - from); };
    return QColor::fromRgbF(between(page.redF(), text.redF()),
                            between(page.greenF(), text.greenF()),
                            between(page.blueF(), text.blueF()));
}

QString leadingBlanks(const QString& line)
{
    const auto end =
        std::find_if_not(line.begin(), line.end(), [](QChar c) { return c.isSpace(); });
    return line.left(static_cast<int>(end - line.begin()));
}

} // namespace

/// The strip with the line numbers, at the leading edge of the editor.
class CodeEditor::LineNumbers : public QWidget
{
public:
    explicit LineNumbers(CodeEditor& editor)
        : QWidget(&editor)
        , m_editor(editor)
    {
    }

    QSize sizeHint() const override { return {m_editor.lineNumberWidth(), 0}; }

protected:
    void paintEvent(QPaintEvent* event) override { m_editor.paintLineNumbers(event); }

private:
    CodeEditor& m_editor;
};

CodeEditor::CodeEditor(QWidget* parent, Content content)
    : QPlainTextEdit(parent)
    , m_lineNumbers(new LineNumbers(*this))
{
    makePage(*this);
    setLineWrapMode(NoWrap);
    if (content == Content::Script)
        new ScriptHighlighter(document());
    connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { layOut(); });
    connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& area, int scrolledBy) {
        if (scrolledBy != 0)
            m_lineNumbers->scroll(0, scrolledBy);
        else
            m_lineNumbers->update(0, area.y(), m_lineNumbers->width(), area.height());
    });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { emphasiseLines(); });
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int /*position*/, int removed, int added) {
                // The highlighter's changes of colour emit this signal, too, with as many
                // characters added as removed.
                if (removed != added && m_errorLine != 0)
                    markError(0);
            });
    layOut();
    emphasiseLines();
}

void CodeEditor::markError(int line)
{
    m_errorLine = line;
    if (line > 0)
        goToLine(line);
    emphasiseLines();
}

void CodeEditor::goToLine(int line)
{
    const QTextBlock block =
        document()->findBlockByNumber(std::clamp(line, 1, document()->blockCount()) - 1);
    setTextCursor(QTextCursor(block));
    ensureCursorVisible();
}

void CodeEditor::toggleComment()
{
    QTextCursor cursor = textCursor();
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    const QTextBlock end = lastSelectedBlock().next();
    int column = std::numeric_limits<int>::max();
    bool areAllComments = true;
    for (QTextBlock block = first; block != end; block = block.next()) {
        const QString text = block.text();
        const int blanks = leadingBlanks(text).size();
        if (blanks == text.size())
            continue;
        column = std::min(column, blanks);
        areAllComments = areAllComments && text.midRef(blanks).startsWith(commentSign);
    }
    if (column == std::numeric_limits<int>::max())
        return;
    cursor.beginEditBlock();
    for (QTextBlock block = first; block != end; block = block.next()) {
        const QString text = block.text();
        const int blanks = leadingBlanks(text).size();
        if (blanks == text.size())
            continue;
        QTextCursor sign(block);
        sign.setPosition(block.position() + (areAllComments ? blanks : column));
        if (!areAllComments) {
            sign.insertText(commentSign + QLatin1Char(' '));
            continue;
        }
        const bool hasBlank = text.midRef(blanks + commentSign.size()).startsWith(QLatin1Char(' '));
        sign.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor,
                          commentSign.size() + (hasBlank ? 1 : 0));
        sign.removeSelectedText();
    }
    cursor.endEditBlock();
}

void CodeEditor::zoomIn()
{
    setZoom(m_zoom + zoomStep);
}

void CodeEditor::zoomOut()
{
    setZoom(m_zoom - zoomStep);
}

void CodeEditor::resetZoom()
{
    setZoom(100);
}

void CodeEditor::insertFromMimeData(const QMimeData* source)
{
    // A file with a NUL is no text, and couldn't be opened again.
    const QString text = source->text().remove(QChar::Null);
    const qint64 added = text.toUtf8().size();
    if (!hasRoomFor(added)) {
        Q_EMIT pasteRefused(added);
        return;
    }
    QMimeData plain;
    plain.setText(text);
    QPlainTextEdit::insertFromMimeData(&plain);
}

bool CodeEditor::hasRoomFor(qint64 bytes) const
{
    // Counting takes its time; most texts are far from the limit.
    return document()->characterCount() + bytes <= maxSize / bytesPerCharacter
        || toPlainText().toUtf8().size() + bytes <= maxSize;
}

/// Returns whether there is no room for something that the user types, and tells so.
bool CodeEditor::refuses(qint64 bytes)
{
    if (textCursor().hasSelection() || hasRoomFor(bytes))
        return false;
    Q_EMIT typingRefused();
    return true;
}

void CodeEditor::inputMethodEvent(QInputMethodEvent* event)
{
    if (event->commitString().isEmpty() || !refuses(event->commitString().toUtf8().size()))
        QPlainTextEdit::inputMethodEvent(event);
}

void CodeEditor::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    if (event->angleDelta().y() != 0)
        setZoom(m_zoom + (event->angleDelta().y() > 0 ? zoomStep : -zoomStep));
    event->accept();
}

void CodeEditor::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::StyleChange && event->type() != QEvent::FontChange)
        return;
    setTabStopDistance(indentation * fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    layOut();
    emphasiseLines();
}

void CodeEditor::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: {
        const QString blanks =
            leadingBlanks(textCursor().block().text().left(textCursor().positionInBlock()));
        if (refuses(1 + blanks.toUtf8().size()))
            return;
        QTextCursor cursor = textCursor();
        cursor.beginEditBlock();
        cursor.insertBlock();
        cursor.insertText(blanks);
        cursor.endEditBlock();
        setTextCursor(cursor);
        ensureCursorVisible();
        return;
    }
    case Qt::Key_Tab:
        if (!refuses(indentation) && !indentSelection(true))
            textCursor().insertText(QString(indentation, QLatin1Char(' ')));
        return;
    case Qt::Key_Backtab:
        indentSelection(false);
        return;
    default:
        if (event->text().isEmpty() || !event->text().at(0).isPrint()
            || !refuses(event->text().toUtf8().size()))
            QPlainTextEdit::keyPressEvent(event);
    }
}

void CodeEditor::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    layOut();
}

int CodeEditor::lineNumberWidth() const
{
    const int digits = std::max(3, QString::number(blockCount()).size());
    return digits * fontMetrics().horizontalAdvance(QLatin1Char('9')) + 2 * numberMargin;
}

void CodeEditor::paintLineNumbers(QPaintEvent* event)
{
    using libzvutil::ZvStyleBrush;
    QPainter painter(m_lineNumbers);
    const QColor panel = styleColour(ZvStyleBrush::Panel);
    const QColor own = readable(styleColour(ZvStyleBrush::TextEnabled), panel);
    const QColor others = readable(styleColour(ZvStyleBrush::TextDisabled), panel);
    painter.fillRect(event->rect(), panel);
    painter.setFont(font());
    const int current = textCursor().blockNumber();
    QTextBlock block = firstVisibleBlock();
    qreal top = blockBoundingGeometry(block).translated(contentOffset()).top();
    while (block.isValid() && top <= event->rect().bottom()) {
        const qreal height = blockBoundingRect(block).height();
        painter.setPen(block.blockNumber() == current ? own : others);
        painter.drawText(
            QRectF(0, top, m_lineNumbers->width() - numberMargin, fontMetrics().height()),
            Qt::AlignRight, QString::number(block.blockNumber() + 1));
        top += height;
        block = block.next();
    }
}

void CodeEditor::layOut()
{
    const int width = lineNumberWidth();
    if (layoutDirection() == Qt::RightToLeft)
        setViewportMargins(0, 0, width, 0);
    else
        setViewportMargins(width, 0, 0, 0);
    QRect strip = contentsRect();
    if (layoutDirection() == Qt::RightToLeft)
        strip.setLeft(strip.right() - width + 1);
    else
        strip.setWidth(width);
    m_lineNumbers->setGeometry(strip);
    m_lineNumbers->update();
}

void CodeEditor::emphasiseLines()
{
    const auto line = [](const QTextCursor& cursor, const QColor& background) {
        QTextEdit::ExtraSelection selection;
        selection.format.setBackground(background);
        selection.format.setProperty(QTextFormat::FullWidthSelection, true);
        selection.cursor = cursor;
        selection.cursor.clearSelection();
        return selection;
    };
    QList<QTextEdit::ExtraSelection> selections;
    selections.append(line(textCursor(), currentLineColour()));
    if (m_errorLine > 0) {
        QColor colour = libzvutil::ZvStyle::Current().editorColour("Testplan", "ErrorBackground");
        colour.setAlphaF(0.3);
        selections.append(
            line(QTextCursor(document()->findBlockByNumber(m_errorLine - 1)), colour));
    }
    setExtraSelections(selections);
    m_lineNumbers->update();
}

/// Indents the lines of the selection, or takes one level away unless \p deeper. Returns false, and
/// does nothing, if a selection within one line would be indented.
bool CodeEditor::indentSelection(bool deeper)
{
    QTextCursor cursor = textCursor();
    QTextBlock block = document()->findBlock(cursor.selectionStart());
    const QTextBlock last = lastSelectedBlock();
    if (deeper && block == last)
        return false;
    cursor.beginEditBlock();
    for (;; block = block.next()) {
        QTextCursor lineStart(block);
        if (deeper) {
            lineStart.insertText(QString(indentation, QLatin1Char(' ')));
        } else {
            const int blanks = std::min(leadingBlanks(block.text()).size(), indentation);
            lineStart.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, blanks);
            lineStart.removeSelectedText();
        }
        if (block == last)
            break;
    }
    cursor.endEditBlock();
    return true;
}

/// Returns the last line of the selection. A selection that ends at the start of a line doesn't reach into it.
QTextBlock CodeEditor::lastSelectedBlock() const
{
    const QTextCursor cursor = textCursor();
    const QTextBlock last = document()->findBlock(cursor.selectionEnd());
    const bool endsBefore = cursor.hasSelection() && cursor.selectionEnd() == last.position();
    return endsBefore ? last.previous() : last;
}

void CodeEditor::setZoom(int percent)
{
    ensurePolished();
    if (m_fullSize == 0)
        m_fullSize = QFontInfo(font()).pointSizeF();
    m_zoom = std::clamp(percent, minZoom, maxZoom);
    setPageTextSize(*this, m_zoom == 100 ? 0 : m_fullSize * m_zoom / 100);
}

} // namespace workbench
