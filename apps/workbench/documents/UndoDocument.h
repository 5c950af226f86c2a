#pragma once

#include "documents/EditedContent.h"
#include "documents/ProgressBox.h"

#include <zvworkbench/Document.h>

#include <QKeySequence>
#include <QUndoStack>

#include <functional>
#include <initializer_list>

namespace workbench {

/// A document in one view, whose changes are the steps of an undo stack. The document is marked as
/// modified unless the stack is where it was when the document was saved or loaded.
class UndoDocument : public Document, public EditedContent
{
    Q_OBJECT

public:
    QList<QAction*> toolBarActions() const override;

    quint64 revision() const override;
    void markUnsaved() override;

protected:
    UndoDocument(const DocumentType& type, const QString& title, QWidget* parent);

    /// Fills the window with \p view, and follows \p stack. The subclass, which owns the stack,
    /// calls this once.
    void setView(QWidget& view, QUndoStack& stack);
    /// Disconnects the stack and deletes the view. The subclass's destructor calls this before it
    /// destroys the content that view and stack refer to.
    void endView();

    /// Adds an action with the object name \p name to the menu "Edit" and to the view.
    QAction* addNamedAction(const QString& name, const QString& text,
                            const QList<QKeySequence>& shortcuts, std::function<void()> work);
    QAction* addSeparatorAction();
    /// Adds Undo and Redo, which also go on the tool bar.
    void addUndoActions();
    void addToToolBar(const QList<QAction*>& actions);

    void keyPressEvent(QKeyEvent* event) override;

    /// Returns a box for the progress of reading or saving \p file.
    ProgressBox readingBox(const zvutil::ZvFilePath& file) const;
    ProgressBox savingBox(const zvutil::ZvFilePath& file) const;

private:
    QWidget* m_view = nullptr; // owned as a child
    QUndoStack* m_stack = nullptr; // owned by the subclass
    QList<QAction*> m_toolBarActions;
    quint64 m_revision = 0;
};

/// Returns the shortcuts that \p texts name, such as "Ctrl+Z".
QList<QKeySequence> keys(std::initializer_list<const char*> texts);

/// Returns the shortcuts for Undo and Redo: the platform's, and those that people know from other ones.
QList<QKeySequence> undoKeys();
QList<QKeySequence> redoKeys();

/// Triggers the one of \p actions that Ctrl and the sign of \p event are a shortcut of, if the sign needs Shift. Returns
/// whether there is one. A platform that tells Qt which shortcuts a key press stands for never gets here; the
/// others leave the press to the document.
bool triggerBySign(const QKeyEvent& event, const QList<QAction*>& actions);

/// Returns the shortcuts for what is done with "plus", on keyboards that need Shift for it and on others.
QList<QKeySequence> plusKeys();

} // namespace workbench
