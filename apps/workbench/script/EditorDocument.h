#pragma once

#include "documents/EditedContent.h"
#include "output/OutputContent.h"
#include "script/EditorFindTarget.h"
#include "script/text_content.h"

#include <zvworkbench/Document.h>

#include <QList>
#include <QString>

class QLabel;
class QPlainTextEdit;

namespace workbench {

class CodeEditor;
class FindBar;

/// A text that the user edits, searches and saves.
///
/// A file whose lines all end in CR LF is saved with CR LF again, any other file with LF.
class EditorDocument : public Document, public EditedContent, public OutputContent
{
    Q_OBJECT

public:
    ~EditorDocument() override;

    CodeEditor& editor();

    QList<QAction*> toolBarActions() const override;
    QList<QAction*> windowActions() const override;
    void showHit(int line, const QString& text) override;

    ContentWriter snapshot() const override;
    quint64 revision() const override;
    void markUnsaved() override;

    bool isBlank() const override;
    QPageLayout::Orientation orientation() const override;
    std::unique_ptr<Pages> pages(const Paper& paper, const Progress& progress) const override;

protected:
    /// Creates the document with an editor for its type's content. The subclass shows `page()`, and calls
    /// `addEditActions` once.
    EditorDocument(const DocumentType& type, const QString& title, QWidget* parent,
                   CodeEditor& editor);

    /// Returns the editor with its bars.
    QWidget& page();
    void addEditActions();
    QAction* addNamedAction(const QString& name, const QString& text,
                            const QList<QKeySequence>& shortcuts, std::function<void()> work);
    QAction* addSeparatorAction();
    /// Adds actions that work in the whole window while this document is the current one.
    void addWindowActions(const QList<QAction*>& actions);
    void addToToolBar(const QList<QAction*>& actions);

    /// Returns the text that Copy and Select All are about: what has the focus, or else the editor.
    virtual QPlainTextEdit& focusedText();
    /// Enables the actions that can do something now.
    void enableActions();

    /// Returns the content of a file, whatever it is. Throws `FileError` if it can't be read or is too large.
    TextContent contentOfFile(const zvutil::ZvFilePath& file) const;
    void setContent(const TextContent& content);

    void write(const zvutil::ZvFilePath& file) const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addClipboardActions();
    void addZoomActions();
    void makeNote();
    void watchSize();
    void showNote();
    void convertToUtf8();
    void askForLine();

    CodeEditor* m_editor; // owned as a child, like the next five
    QWidget* m_page;
    QWidget* m_note;
    QLabel* m_noteText;
    int m_fullCount = 0; // characters of a text that has no room; 0 unless the user has been told
    QAction* m_convert;
    FindBar* m_findBar;
    EditorFindTarget m_target;
    QList<QAction*> m_toolBarActions;
    QList<QAction*> m_windowActions;
    TextContent m_content; // without its text
};

} // namespace workbench
