#pragma once

#include "documents/Document.h"
#include "documents/ProgressBox.h"

#include <QKeySequence>
#include <QUndoStack>

#include <functional>
#include <initializer_list>

namespace workbench {

/// A document in one view, whose changes are the steps of an undo stack: the modified mark tells whether
/// the stack is where it was when the document was saved or loaded.
class UndoDocument : public Document
{
    Q_OBJECT

public:
    QList<QAction*> toolBarActions() const override;

protected:
    UndoDocument(const DocumentType& type, const QString& title, QWidget* parent);

    /// Fills the window with \p view. The subclass, whose stack it is, calls it once.
    void setView(QWidget& view, QUndoStack& stack);
    /// For the subclass's destructor: neither view nor document hear of the end of what they show.
    void endView();

    /// Adds an action by \p name to the menu "Edit" and to the view.
    QAction* addNamedAction(const QString& name, const QString& text,
                            const QList<QKeySequence>& shortcuts, std::function<void()> work);
    QAction* addSeparatorAction();
    /// Undo and redo, also on the tool bar.
    void addUndoActions();
    void addToToolBar(const QList<QAction*>& actions);

    /// What shows how far reading or saving of \p file is.
    ProgressBox readingBox(const zvutil::ZvFilePath& file) const;
    ProgressBox savingBox(const zvutil::ZvFilePath& file) const;

    /// Called before an undo. Nothing here.
    virtual void finishTyping() const;

private:
    QWidget* m_view = nullptr; // a child
    QUndoStack* m_stack = nullptr; // the subclass's
    QList<QAction*> m_toolBarActions;
};

/// Shortcuts from their texts.
QList<QKeySequence> keys(std::initializer_list<const char*> texts);

} // namespace workbench
