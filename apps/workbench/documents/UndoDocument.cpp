#include "documents/UndoDocument.h"

#include "common/edit_icons.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <utility>

namespace workbench {

UndoDocument::UndoDocument(const DocumentType& type, const QString& title, QWidget* parent)
    : Document(type, title, parent)
{
    connect(this, &ZvContentWidget::saved, this, [this] { m_stack->setClean(); });
}

void UndoDocument::setView(QWidget& view, QUndoStack& stack)
{
    m_view = &view;
    m_stack = &stack;
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    connect(m_stack, &QUndoStack::cleanChanged, this,
            [this](bool isClean) { setModified(!isClean); });
    connect(m_stack, &QUndoStack::indexChanged, this, [this] { ++m_revision; });
}

void UndoDocument::endView()
{
    m_stack->disconnect(this);
    delete m_view;
}

QList<QAction*> UndoDocument::toolBarActions() const
{
    return m_toolBarActions;
}

quint64 UndoDocument::revision() const
{
    return m_revision;
}

void UndoDocument::markUnsaved()
{
    m_stack->resetClean();
}

void UndoDocument::keyPressEvent(QKeyEvent* event)
{
    if (!triggerBySign(*event, actions()))
        Document::keyPressEvent(event);
}

QAction* UndoDocument::addNamedAction(const QString& name, const QString& text,
                                      const QList<QKeySequence>& shortcuts,
                                      std::function<void()> work)
{
    QAction* const action = addEditAction(text, shortcuts.value(0));
    action->setShortcuts(shortcuts);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, std::move(work));
    m_view->addAction(action);
    return action;
}

QAction* UndoDocument::addSeparatorAction()
{
    auto* const separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    m_view->addAction(separator);
    return separator;
}

void UndoDocument::addUndoActions()
{
    QAction* const undo = addNamedAction(QStringLiteral("undo"), tr("&Undo"), undoKeys(), [this] {
        finishTyping();
        m_stack->undo();
    });
    QAction* const redo = addNamedAction(QStringLiteral("redo"), tr("&Redo"), redoKeys(),
                                         [this] { m_stack->redo(); });
    undo->setIcon(undoIcon());
    redo->setIcon(redoIcon());
    undo->setEnabled(false);
    redo->setEnabled(false);
    connect(m_stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(m_stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    addToToolBar({undo, redo});
}

void UndoDocument::addToToolBar(const QList<QAction*>& actions)
{
    m_toolBarActions += actions;
}

ProgressBox UndoDocument::readingBox(const zvutil::ZvFilePath& file) const
{
    return {tr("Reading “%1”…").arg(file.filename().toQString()), window()};
}

ProgressBox UndoDocument::savingBox(const zvutil::ZvFilePath& file) const
{
    return {tr("Saving “%1”…").arg(file.filename().toQString()), window()};
}

QList<QKeySequence> keys(std::initializer_list<const char*> texts)
{
    QList<QKeySequence> sequences;
    for (const char* const text : texts)
        sequences.append(QKeySequence(QString::fromLatin1(text)));
    return sequences;
}

QList<QKeySequence> undoKeys()
{
    return QKeySequence::keyBindings(QKeySequence::Undo);
}

QList<QKeySequence> redoKeys()
{
    QList<QKeySequence> sequences = keys({"Ctrl+Y", "Ctrl+Shift+Z"});
    for (const QKeySequence& sequence : QKeySequence::keyBindings(QKeySequence::Redo)) {
        if (!sequences.contains(sequence))
            sequences.append(sequence);
    }
    return sequences;
}

bool triggerBySign(const QKeyEvent& event, const QList<QAction*>& actions)
{
    constexpr int lastOfAscii = 0x7F;
    const QChar sign(event.key() < lastOfAscii ? event.key() : 0);
    const auto withoutKeypad = event.modifiers() & ~Qt::KeypadModifier;
    if (!(sign.isPunct() || sign.isSymbol())
        || withoutKeypad != (Qt::ControlModifier | Qt::ShiftModifier))
        return false;
    const QKeySequence shiftless(event.key() | int(Qt::ControlModifier));
    for (QAction* const action : actions) {
        if (action->shortcuts().contains(shiftless)) {
            action->trigger();
            return true;
        }
    }
    return false;
}

QList<QKeySequence> plusKeys()
{
    // Where the plus sign needs Shift, Qt takes one key press for "Ctrl++" and for "Ctrl+Shift+=" alike; with
    // both it would call the shortcut ambiguous and do nothing.
    return keys({"Ctrl++", "Ctrl+="});
}

} // namespace workbench
