#include "script/EditorFindTarget.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace workbench {

EditorFindTarget::EditorFindTarget(QPlainTextEdit& editor)
    : m_editor(editor)
{
}

int EditorFindTarget::rowCount() const
{
    return m_editor.blockCount();
}

int EditorFindTarget::columnCount(int /*row*/) const
{
    return 1;
}

QString EditorFindTarget::text(int row, int /*column*/) const
{
    return m_editor.document()->findBlockByNumber(row).text();
}

bool EditorFindTarget::selectsWholeTexts() const
{
    return false;
}

TextPlace EditorFindTarget::selectionStart() const
{
    return placeOf(m_editor.textCursor().selectionStart());
}

TextPlace EditorFindTarget::selectionEnd() const
{
    return placeOf(m_editor.textCursor().selectionEnd());
}

QString EditorFindTarget::selectedText() const
{
    constexpr int maxLength = 200;
    const QString selected = m_editor.textCursor().selectedText();
    const bool isInOneLine = !selected.contains(QChar::ParagraphSeparator);
    return isInOneLine && selected.size() <= maxLength ? selected : QString();
}

void EditorFindTarget::select(const FoundText& found)
{
    QTextCursor cursor = m_editor.textCursor();
    const int position = positionOf(found.place);
    cursor.setPosition(position);
    cursor.setPosition(position + found.length, QTextCursor::KeepAnchor);
    m_editor.setTextCursor(cursor);
    m_editor.ensureCursorVisible();
}

bool EditorFindTarget::isReadOnly() const
{
    return m_editor.isReadOnly();
}

void EditorFindTarget::change(const QString& /*step*/, const std::vector<TextChange>& changes)
{
    QTextCursor cursor = m_editor.textCursor();
    cursor.beginEditBlock();
    // The last change comes first, since each moves what stands behind it.
    std::for_each(changes.rbegin(), changes.rend(), [&](const TextChange& change) {
        const int position = positionOf(change.place);
        cursor.setPosition(position);
        cursor.setPosition(position + change.length, QTextCursor::KeepAnchor);
        cursor.insertText(change.text);
    });
    cursor.endEditBlock();
    m_editor.setTextCursor(cursor);
}

TextPlace EditorFindTarget::placeOf(int position) const
{
    const QTextBlock block = m_editor.document()->findBlock(position);
    return {block.blockNumber(), 0, position - block.position()};
}

int EditorFindTarget::positionOf(const TextPlace& place) const
{
    return m_editor.document()->findBlockByNumber(place.row).position() + place.position;
}

} // namespace workbench
