#pragma once

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class DockableWidget;

namespace workbench {

class Document;
struct RecoveryCopy;
class Workbench;

/// Makes the documents of a window: new ones, those of files, and those of recovery copies. If that fails, tells the
/// user why and returns nullptr.
class DocumentOpener : public QObject
{
    Q_OBJECT

public:
    explicit DocumentOpener(Workbench& window);

    Document* newDocument(const DocumentType& type);
    /// Opens a file, or activates the window that has it already.
    Document* openFile(const QString& file);
    void openFiles(const QStringList& files);
    void openAtLine(const QString& file, int line, const QString& text);
    /// Opens the files that the user chooses in a dialog.
    void askForFiles();
    /// Opens a document as a recovery copy has it.
    Document* recover(const RecoveryCopy& copy);

    /// Keeps \p failure for the one message about several files while they are being opened. Returns false at any other
    /// time.
    bool collect(const Failure& failure);

Q_SIGNALS:
    /// Emitted when a document has its content; the receiver shows it in a window, which owns it.
    void made(workbench::Document* document);
    /// Emitted when a file has been read that wasn't open before.
    void fileOpened(const QString& file);

private:
    Document* makeDocument(const DocumentType& type, const QString& title);
    void refuse(const QString& file);
    DockableWidget* windowOf(const QString& path) const;

    Workbench& m_window;
    std::optional<QList<Failure>> m_failures; // collected while several files are opened
    int m_newDocuments = 0;
};

} // namespace workbench
