#pragma once

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>
#include <zvworkbench/zvworkbench_export.h>

#include <zvutil/ZvContentWidget.h>

#include <QAction>
#include <QList>
#include <QString>

namespace workbench {

/// A document of the workbench in its window: what all types have in common.
///
/// A subclass shows the content, and implements `read` and `write` for its files. It calls
/// `setModified` when the user changes something. The actions of the widget (`QWidget::addAction`)
/// are what the user can do with the document: the window shows them in its menu "Edit", and their
/// shortcuts work in this document's window alone.
class ZVWORKBENCH_EXPORT Document : public ZvContentWidget
{
    Q_OBJECT

public:
    /// Creates a new document without a file; \p title stands for its name until it has one.
    Document(const DocumentType& type, const QString& title, QWidget* parent);

    const DocumentType& type() const;

    /// Shows the content of a file, takes its name and watches it. If the file can't be read,
    /// changes nothing, emits `failed` and returns false.
    bool load(const zvutil::ZvFilePath& path);

    /// Returns the actions for the tool bar while the user works in this window; none in the base
    /// class.
    virtual QList<QAction*> toolBarActions() const;

    int fileType() const override;
    QString closeEventText(int index) const override;
    QString documentTypeName() const override;
    /// Calls `write`, and emits `failed` if that fails.
    void writeFile(const zvutil::ZvFilePath& path) const override;

    bool canReloadFile() const override;
    /// Loads the file again. Unsaved changes are lost.
    void reloadFile() override;

Q_SIGNALS:
    /// Emitted when something that the user asked for has failed.
    void failed(const workbench::Failure& failure) const;

protected:
    /// Replaces the content by that of \p file; an empty file gives an empty document. Throws
    /// `FileError`, whose reason the user is shown, and then has changed nothing.
    virtual void read(const zvutil::ZvFilePath& file) = 0;
    /// Writes the content to \p file. Throws `FileError`, whose reason the user is shown, and then leaves
    /// the file as it was.
    virtual void write(const zvutil::ZvFilePath& file) const = 0;

    /// Asks the user for a file to save to. Unlike the base class, serves documents of all types,
    /// and adds the extension if the user left it out.
    zvutil::ZvFilePath requestSavePath() const override;

    /// Adds an action to the menu "Edit", with a shortcut that works in this window alone.
    QAction* addEditAction(const QString& text, const QKeySequence& shortcut);

private:
    const DocumentType& m_type;
};

} // namespace workbench
