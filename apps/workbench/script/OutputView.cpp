#include "script/OutputView.h"

#include "common/page.h"

#include <zvutil/ZvStyle.h>

#include <QColor>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>

namespace workbench {

namespace {

constexpr int keptLines = 10'000;
constexpr int isWritten = 1;

QColor colourOf(OutputView::Kind kind)
{
    using libzvutil::ZvStyle;
    using libzvutil::ZvStyleBrush;
    switch (kind) {
    case OutputView::Kind::Input:
        return ZvStyle::Current().colour(ZvStyleBrush::Accent);
    case OutputView::Kind::Remark:
        return ZvStyle::Current().colour(ZvStyleBrush::TextDisabled);
    case OutputView::Kind::Error:
        return ZvStyle::Current().editorColour("Testplan", "ErrorBackground");
    case OutputView::Kind::Output:
        break;
    }
    return {};
}

} // namespace

OutputView::OutputView(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(keptLines);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    makePage(*this);
}

void OutputView::append(const QString& lines, Kind kind)
{
    QScrollBar& bar = *verticalScrollBar();
    const bool isAtEnd = bar.value() == bar.maximum();
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    // A first line that is empty leaves the document so.
    QTextBlock first = document()->firstBlock();
    if (!document()->isEmpty() || first.userState() == isWritten)
        cursor.insertBlock();
    first.setUserState(isWritten);
    QTextCharFormat format;
    // Without a colour it is the style sheet's.
    const QColor colour = colourOf(kind);
    if (colour.isValid())
        format.setForeground(colour);
    cursor.insertText(lines, format);
    cursor.endEditBlock();
    if (isAtEnd)
        bar.setValue(bar.maximum());
}

} // namespace workbench
