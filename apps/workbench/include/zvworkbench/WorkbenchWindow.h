#pragma once

#include <zvworkbench/Failure.h>

#include <QList>
#include <QString>

class QWidget;

namespace workbench {

class Document;
struct DocumentType;

/// What modules may ask of the workbench's window. GUI thread.
/// @since 0.2 @ingroup workbench
class WorkbenchWindow
{
public:
    /// @return the document that the user works in, or has worked in last; nullptr if there is none.
    virtual Document* currentDocument() const = 0;

    /// @return the documents that are open.
    virtual QList<Document*> documents() const = 0;

    /// Opens a new document, which the window owns. If it can't be made, tells the user.
    /// @param type one that has been added
    /// @return the document, or nullptr
    virtual Document* newDocument(const DocumentType& type) = 0;

    /// Opens a file, or activates the window that has it already. If that fails, tells the user why.
    /// @param file its path
    /// @return the document, or nullptr
    virtual Document* openFile(const QString& file) = 0;

    /// Shows a text on the status bar for a few seconds.
    /// @param text one line
    virtual void showMessage(const QString& text) = 0;

    /// Shows a failure in a box, writes it to the log, and returns at once.
    /// @param failure what to tell
    virtual void showFailure(const Failure& failure) = 0;

    /// @return the window itself, as the parent of dialogs.
    virtual QWidget& widget() = 0;

protected:
    ~WorkbenchWindow() = default;
};

} // namespace workbench
