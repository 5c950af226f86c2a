#include "script/OutputView.h"

#include "common/page_style.h"
#include "common/style_options.h"

#include <zvutil/ZvStyle.h>

#include <QColor>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>

namespace workbench {

namespace {

constexpr int maxLines = 10'000;
constexpr int isWritten = 1;

QColor colourOf(OutputView::Kind kind)
{
    using libzvutil::ZvStyle;
    using libzvutil::ZvStyleBrush;
    switch (kind) {
    case OutputView::Kind::Input:
        return pageTextColour(styleColour(ZvStyleBrush::Accent));
    case OutputView::Kind::Remark:
        return pageTextColour(styleColour(ZvStyleBrush::TextDisabled));
    case OutputView::Kind::Error:
        return pageTextColour(ZvStyle::Current().editorColour("Testplan", "ErrorBackground"));
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
    setMaximumBlockCount(maxLines);
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
    // An empty first line leaves the document empty, so the block's state records that it was
    // written.
    QTextBlock first = document()->firstBlock();
    if (!document()->isEmpty() || first.userState() == isWritten)
        cursor.insertBlock();
    first.setUserState(isWritten);
    QTextCharFormat format;
    // The style sheet's colour applies to a format without one.
    const QColor colour = colourOf(kind);
    if (colour.isValid())
        format.setForeground(colour);
    cursor.insertText(lines, format);
    cursor.endEditBlock();
    if (isAtEnd)
        bar.setValue(bar.maximum());
}

} // namespace workbench
