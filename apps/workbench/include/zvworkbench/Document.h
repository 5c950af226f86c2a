#pragma once

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>
#include <zvworkbench/zvworkbench_export.h>

#include <zvutil/ZvContentWidget.h>

#include <QAction>
#include <QList>
#include <QString>

namespace workbench {

class KnownFile;

/// A document of the workbench in its window: what all types have in common.
///
/// A subclass shows the content, and implements `read` and `write` for its files. It calls
/// `setModified` when the user changes something. The actions of the widget (`QWidget::addAction`)
/// are what the user can do with the document: the window shows them in its menu "Edit", and their
/// shortcuts work in this document's window alone, unless `windowActions` has them. GUI thread.
/// @since 0.2 @ingroup workbench
class ZVWORKBENCH_EXPORT Document : public ZvContentWidget
{
    Q_OBJECT

public:
    /// Creates a new document without a file.
    /// @param type the document's type; must outlive it
    /// @param title stands for its name until it has a file
    /// @param parent owns the document
    Document(const DocumentType& type, const QString& title, QWidget* parent);

    /// @return the document's type.
    const DocumentType& type() const;

    /// Shows the content of a file, takes its name and watches it. If the file can't be read,
    /// changes nothing and emits `failed`.
    /// @param path the file
    /// @return whether the file has been read
    bool load(const zvutil::ZvFilePath& path);

    /// Shows the content of a copy as unsaved changes of a file, whose name it takes. If the copy can't be
    /// read, changes nothing and emits `failed`.
    /// @param copy the file that has the content
    /// @param file what `save` writes to; if it is empty, the document keeps its title and has no file
    /// @return whether the copy has been read
    bool recover(const zvutil::ZvFilePath& copy, const zvutil::ZvFilePath& file);

    /// @return the actions for the tool bar while the user works in this window; none in the base
    /// class.
    virtual QList<QAction*> toolBarActions() const;

    /// @return those of the actions whose shortcuts work anywhere in the workbench's window while this
    /// document is the current one; none in the base class. None of them may be a shortcut of the window.
    virtual QList<QAction*> windowActions() const;

    /// Shows what a search in files has found. Does nothing in the base class.
    /// @param line of the file, counted from 1
    /// @param text what was searched for; case doesn't count
    virtual void showHit(int line, const QString& text);

    /// @return the type's.
    int fileType() const override;
    /// @param index 0 for the question, 1 for what is said below it
    /// @return the texts of the workbench.
    QString closeEventText(int index) const override;
    /// @return the type's name.
    QString documentTypeName() const override;
    /// Calls `write`, and emits `failed` if that fails. If another program has changed the document's
    /// file, asks the user first, who may choose another one or cancel; a cancel emits nothing.
    /// @param path where to
    void writeFile(const zvutil::ZvFilePath& path) const override;

    /// Calls `write` for what a crash would lose. Throws what `write` throws.
    /// @param folder where to write
    /// @param name the file's name there
    void saveSessionBackup(const QString& folder, const QString& name) override;

    /// @return whether there is a file.
    bool canReloadFile() const override;
    /// Loads the file again. Unsaved changes are lost.
    void reloadFile() override;

Q_SIGNALS:
    /// Emitted when something that the user asked for has failed.
    /// @param failure what to tell the user
    void failed(const workbench::Failure& failure) const;

protected:
    /// Replaces the content by that of a file; an empty file gives an empty document. Throws
    /// `FileError`, whose reason the user is shown, and then has changed nothing.
    /// @param file exists, and could be read a moment ago
    virtual void read(const zvutil::ZvFilePath& file) = 0;
    /// Writes the content to a file. Throws `FileError`, whose reason the user is shown, and then leaves
    /// the file as it was.
    /// @param file where to
    virtual void write(const zvutil::ZvFilePath& file) const = 0;

    /// Asks the user for a file to save to. Unlike the base class, serves documents of all types,
    /// and adds the extension if the user left it out.
    /// @return the file, or an empty path if the user has cancelled
    zvutil::ZvFilePath requestSavePath() const override;

    /// Adds an action to the menu "Edit", with a shortcut that works in this window alone.
    /// @param text as on the menu
    /// @param shortcut empty for none
    /// @return the action, which the document owns
    QAction* addEditAction(const QString& text, const QKeySequence& shortcut);

private:
    void writeTo(const zvutil::ZvFilePath& path) const;

    const DocumentType& m_type;
    KnownFile* m_known; // owned as a child
};

} // namespace workbench
