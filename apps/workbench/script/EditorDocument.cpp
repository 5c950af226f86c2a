#include "script/EditorDocument.h"

#include "common/edit_icons.h"
#include "common/focused_field.h"
#include "common/number_text.h"
#include "common/path_names.h"
#include "documents/UndoDocument.h"
#include "documents/save_bytes.h"
#include "script/CodeEditor.h"
#include "script/PrintedText.h"
#include "search/FindBar.h"

#include <zvworkbench/FileError.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace workbench {

EditorDocument::EditorDocument(const DocumentType& type, const QString& title, QWidget* parent,
                               CodeEditor& editor)
    : Document(type, title, parent)
    , m_editor(&editor)
    , m_page(new QWidget(this))
    , m_note(new QWidget(m_page))
    , m_noteText(new QLabel(m_note))
    , m_target(editor)
{
    m_findBar = new FindBar(*this, m_target, *m_editor);
    makeNote();
    auto* const layout = new QVBoxLayout(m_page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_note);
    layout->addWidget(m_editor, 1);
    layout->addWidget(m_findBar);
    setFocusProxy(m_editor);
    connect(m_editor->document(), &QTextDocument::modificationChanged, this,
            [this](bool modified) { setModified(modified); });
    connect(this, &ZvContentWidget::saved, this,
            [this] { m_editor->document()->setModified(false); });
    connect(m_editor, &CodeEditor::pasteRefused, this, [this](qint64 size) {
        Q_EMIT failed({tr("The text was not pasted."),
                       tr("It has %1 bytes; what is edited here can have at most %2 in all.")
                           .arg(numberText(size), numberText(CodeEditor::maxSize)),
                       tr("Paste a part of it, or save it as a file of its own.")});
    });
    watchSize();
}

/// Tells of a text that is as long as it can be, until it is shorter.
void EditorDocument::watchSize()
{
    connect(m_editor, &CodeEditor::typingRefused, this, [this] {
        m_fullCount = m_editor->document()->characterCount();
        showNote();
    });
    connect(m_editor->document(), &QTextDocument::contentsChanged, this, [this] {
        if (m_editor->document()->characterCount() < m_fullCount) {
            m_fullCount = 0;
            showNote();
        }
    });
}

EditorDocument::~EditorDocument()
{
    // ~QWidget deletes the editor, and the focus that goes elsewhere would call this object when it is destroyed.
    qApp->disconnect(this);
    m_editor->disconnect(this);
    m_editor->document()->disconnect(this);
}

CodeEditor& EditorDocument::editor()
{
    return *m_editor;
}

QWidget& EditorDocument::page()
{
    return *m_page;
}

QList<QAction*> EditorDocument::toolBarActions() const
{
    return m_toolBarActions;
}

QList<QAction*> EditorDocument::windowActions() const
{
    return m_windowActions;
}

void EditorDocument::showHit(int line, const QString& text)
{
    m_editor->goToLine(line);
    m_findBar->findFirst(text, {m_editor->textCursor().blockNumber(), 0, 0});
}

void EditorDocument::addEditActions()
{
    QAction* const undo = addNamedAction(QStringLiteral("undo"), tr("&Undo"), undoKeys(),
                                         [this] { m_editor->undo(); });
    QAction* const redo = addNamedAction(QStringLiteral("redo"), tr("&Redo"), redoKeys(),
                                         [this] { m_editor->redo(); });
    undo->setIcon(undoIcon());
    redo->setIcon(redoIcon());
    undo->setEnabled(false);
    redo->setEnabled(false);
    connect(m_editor, &QPlainTextEdit::undoAvailable, undo, &QAction::setEnabled);
    connect(m_editor, &QPlainTextEdit::redoAvailable, redo, &QAction::setEnabled);
    addToToolBar({undo, redo});
    addClipboardActions();
    addSeparatorAction();
    addActions(m_findBar->findActions());
    addWindowActions(m_findBar->findActions());
    addWindowActions({addNamedAction(QStringLiteral("goToLine"), tr("&Go to Line…"),
                                     keys({"Ctrl+G"}), [this] { askForLine(); })});
    addSeparatorAction();
    addZoomActions();
}

void EditorDocument::addClipboardActions()
{
    addSeparatorAction();
    QAction* const cut = addNamedAction(QStringLiteral("cut"), tr("Cu&t"),
                                        QKeySequence::keyBindings(QKeySequence::Cut), [this] {
                                            QLineEdit* const field = focusedField(*this);
                                            field ? field->cut() : m_editor->cut();
                                        });
    QAction* const copy = addNamedAction(QStringLiteral("copy"), tr("&Copy"),
                                         QKeySequence::keyBindings(QKeySequence::Copy), [this] {
                                             QLineEdit* const field = focusedField(*this);
                                             field ? field->copy() : focusedText().copy();
                                         });
    QAction* const paste = addNamedAction(QStringLiteral("paste"), tr("&Paste"),
                                          QKeySequence::keyBindings(QKeySequence::Paste), [this] {
                                              QLineEdit* const field = focusedField(*this);
                                              field ? field->paste() : m_editor->paste();
                                          });
    addNamedAction(QStringLiteral("delete"), tr("&Delete"),
                   QKeySequence::keyBindings(QKeySequence::Delete), [this] {
                       QLineEdit* const field = focusedField(*this);
                       field ? field->del() : m_editor->textCursor().removeSelectedText();
                   });
    addNamedAction(QStringLiteral("selectAll"), tr("Select &All"),
                   QKeySequence::keyBindings(QKeySequence::SelectAll), [this] {
                       QLineEdit* const field = focusedField(*this);
                       field ? field->selectAll() : focusedText().selectAll();
                   });
    cut->setIcon(cutIcon());
    copy->setIcon(copyIcon());
    paste->setIcon(pasteIcon());
    addToToolBar({cut, copy, paste});
    connect(m_editor, &QPlainTextEdit::copyAvailable, this, &EditorDocument::enableActions);
    connect(qApp, &QApplication::focusChanged, this, &EditorDocument::enableActions);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &EditorDocument::enableActions);
    enableActions();
}

void EditorDocument::addZoomActions()
{
    addWindowActions({addNamedAction(QStringLiteral("zoomIn"), tr("Zoom &In"), plusKeys(),
                                     [this] { m_editor->zoomIn(); }),
                      addNamedAction(QStringLiteral("zoomOut"), tr("Zoom &Out"), keys({"Ctrl+-"}),
                                     [this] { m_editor->zoomOut(); }),
                      addNamedAction(QStringLiteral("resetZoom"), tr("Actual &Size"),
                                     keys({"Ctrl+0"}), [this] { m_editor->resetZoom(); })});
}

QAction* EditorDocument::addNamedAction(const QString& name, const QString& text,
                                        const QList<QKeySequence>& shortcuts,
                                        std::function<void()> work)
{
    QAction* const action = addEditAction(text, QKeySequence());
    action->setShortcuts(shortcuts);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, std::move(work));
    return action;
}

QAction* EditorDocument::addSeparatorAction()
{
    auto* const separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    return separator;
}

void EditorDocument::addWindowActions(const QList<QAction*>& actions)
{
    m_windowActions += actions;
}

void EditorDocument::addToToolBar(const QList<QAction*>& actions)
{
    m_toolBarActions += actions;
}

QPlainTextEdit& EditorDocument::focusedText()
{
    return *m_editor;
}

void EditorDocument::enableActions()
{
    const bool isTyping = focusedField(*this);
    const bool canChange = !m_editor->isReadOnly();
    const bool isSelected = m_editor->textCursor().hasSelection();
    const QMimeData* const content = QGuiApplication::clipboard()->mimeData();
    const auto enable = [this](const char* name, bool isEnabled) {
        if (QAction* const action = findChild<QAction*>(QLatin1String(name)))
            action->setEnabled(isEnabled);
    };
    enable("cut", isTyping || (canChange && isSelected));
    enable("copy", isTyping || focusedText().textCursor().hasSelection());
    enable("paste", isTyping || (canChange && content && content->hasText()));
    enable("delete", isTyping || (canChange && isSelected));
    enable("replace", canChange);
    enable("comment", canChange);
}

TextContent EditorDocument::contentOfFile(const zvutil::ZvFilePath& file) const
{
    QFile source(qtFileName(file));
    if (!source.open(QIODevice::ReadOnly))
        throw FileError(source.errorString());
    if (source.size() > CodeEditor::maxSize)
        throw FileError(tr("The file has %1 bytes; a %2 can have at most %3.")
                            .arg(numberText(source.size()), type().name.toLower(),
                                 numberText(CodeEditor::maxSize)));
    const QByteArray bytes = source.readAll();
    if (source.error() != QFileDevice::NoError)
        throw FileError(source.errorString());
    return textContent(bytes);
}

void EditorDocument::setContent(const TextContent& content)
{
    m_editor->setPlainText(content.text);
    m_editor->document()->setModified(false);
    m_editor->setReadOnly(!content.isEditable);
    m_content = content;
    m_content.text.clear();
    showNote();
    enableActions();
}

void EditorDocument::write(const zvutil::ZvFilePath& file) const
{
    if (!m_content.isEditable)
        throw FileError(tr("It contains characters that the editor doesn't keep."));
    snapshot()(file, [](int, int) { return true; });
}

ContentWriter EditorDocument::snapshot() const
{
    TextContent content = m_content;
    content.text = textOf(*m_editor->document());
    return [content](const zvutil::ZvFilePath& file, const Progress& /*progress*/) {
        saveBytes(file, bytesOf(content));
    };
}

quint64 EditorDocument::revision() const
{
    return static_cast<quint64>(m_editor->document()->revision());
}

void EditorDocument::markUnsaved()
{
    m_editor->document()->setModified(true);
}

bool EditorDocument::isBlank() const
{
    return m_editor->document()->isEmpty();
}

QPageLayout::Orientation EditorDocument::orientation() const
{
    return QPageLayout::Portrait;
}

std::unique_ptr<Pages> EditorDocument::pages(const Paper& paper, const Progress& progress) const
{
    return std::make_unique<TablePages>(
        pageTitleOf(*this), paper, std::make_unique<PrintedText>(textOf(*m_editor->document())),
        progress);
}

void EditorDocument::keyPressEvent(QKeyEvent* event)
{
    if (!triggerBySign(*event, actions()))
        Document::keyPressEvent(event);
}

void EditorDocument::makeNote()
{
    m_note->setObjectName(QStringLiteral("note"));
    m_noteText->setObjectName(QStringLiteral("noteText"));
    m_noteText->setWordWrap(true);
    m_convert = new QAction(tr("Convert to UTF-8"), this);
    m_convert->setObjectName(QStringLiteral("convertToUtf8"));
    m_convert->setToolTip(tr("Save the text as UTF-8 from now on"));
    connect(m_convert, &QAction::triggered, this, &EditorDocument::convertToUtf8);
    auto* const button = new QToolButton(m_note);
    button->setDefaultAction(m_convert);
    auto* const layout = new QHBoxLayout(m_note);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(m_noteText, 1);
    layout->addWidget(button);
    showNote();
}

/// Tells what saving would change, or can't do.
void EditorDocument::showNote()
{
    QStringList notes;
    if (m_fullCount > 0)
        notes.append(tr("The text has reached %1 bytes, the most that can be edited here. What you "
                        "type is not added.")
                         .arg(numberText(CodeEditor::maxSize)));
    if (m_content.isLatin1)
        notes.append(tr("This file isn't UTF-8. It is shown as Latin-1, and saved as such."));
    if (!m_content.isEditable)
        notes.append(
            tr("The file contains characters that can't be edited here, so it is read-only."));
    else if (m_content.hasMixedLines)
        notes.append(tr("Some lines end in CR LF, others in LF. Saving ends all of them in LF."));
    m_noteText->setText(notes.join(QLatin1Char(' ')));
    m_note->setVisible(!notes.isEmpty());
    for (QToolButton* const button : m_note->findChildren<QToolButton*>())
        button->setVisible(m_content.isLatin1 && m_content.isEditable);
}

void EditorDocument::convertToUtf8()
{
    m_content.isLatin1 = false;
    m_editor->document()->setModified(true);
    showNote();
}

void EditorDocument::askForLine()
{
    const int lines = m_editor->blockCount();
    bool isAccepted = false;
    const int line =
        QInputDialog::getInt(this, tr("Go to Line"), tr("Line (1 to %1):").arg(numberText(lines)),
                             m_editor->textCursor().blockNumber() + 1, 1, lines, 1, &isAccepted);
    if (!isAccepted)
        return;
    m_editor->goToLine(line);
    m_editor->setFocus();
}

} // namespace workbench
