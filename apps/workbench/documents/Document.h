#pragma once

#include "common/Failure.h"
#include "documents/DocumentType.h"

#include <zvutil/ZvContentWidget.h>

#include <QAction>
#include <QList>
#include <QString>

namespace workbench {

/// A document of the workbench in its window: what all types have in common.
///
/// A subclass shows the content and tells by `read` and `write` how it comes from and goes to a file.
/// It calls `setModified` when the user changes something. What the user can do with it are the actions
/// of the widget (`QWidget::addAction`), which the window shows in its menu "Edit"; their shortcuts hold
/// in this window alone.
class Document : public ZvContentWidget
{
    Q_OBJECT

public:
    /// A new one, without a file; \p title stands for its name until it has one.
    Document(const DocumentType& type, const QString& title, QWidget* parent);

    const DocumentType& type() const;

    /// Shows the content of the file, takes its name and watches it. If the file can't be read,
    /// nothing changes, `failed` is emitted and false returned.
    bool load(const zvutil::ZvFilePath& path);

    /// What belongs on the tool bar while the user works in this window. None here.
    virtual QList<QAction*> toolBarActions() const;

    int fileType() const override;
    QString closeEventText(int index) const override;
    QString documentTypeName() const override;
    /// Writes by `write`, and tells by `failed` if that doesn't work.
    void writeFile(const zvutil::ZvFilePath& path) const override;

    bool canReloadFile() const override;
    /// Loads the file once more. Changes that weren't saved are lost.
    void reloadFile() override;

Q_SIGNALS:
    /// Something that the user has asked for didn't work.
    void failed(const workbench::Failure& failure) const;

protected:
    /// Replaces the content by that of \p file, an empty document if there is nothing in it. Throws
    /// `FileError` or `Stopped`, and then has changed nothing.
    virtual void read(const zvutil::ZvFilePath& file) = 0;
    /// Writes the content to \p file. Throws `FileError` or `Stopped`, and then leaves the file as it is.
    virtual void write(const zvutil::ZvFilePath& file) const = 0;

    /// As the base class, but for documents of all types, and with the extension where the user has left
    /// it out.
    zvutil::ZvFilePath requestSavePath() const override;

    /// Adds an action for the menu "Edit", with a shortcut for this window alone.
    QAction* addEditAction(const QString& text, const QKeySequence& shortcut);

private:
    const DocumentType& m_type;
};

} // namespace workbench
