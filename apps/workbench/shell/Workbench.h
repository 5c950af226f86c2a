#pragma once

#include "shell/WindowSession.h"

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>
#include <zvworkbench/WorkbenchWindow.h>

#include <DockFramework/DockFrame.h>

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

class QCloseEvent;

namespace workbench {

class ConsolePanel;
class Document;
class DocumentCommands;
class DocumentOpener;
class DocumentRecovery;
class DocumentTransfer;
class FileMenu;
class FilesPanel;
class FindInFilesDialog;
class LogPanel;
class MainToolBar;
class RecentFiles;
class StartPage;

/// The window of the workbench: documents in the middle, panels at the sides, and the menus.
///
/// Open files, panels and recent files are kept in a file from one session to the next, and changes that aren't saved
/// in recovery copies.
class Workbench final : public DockFrame, public WorkbenchWindow
{
    Q_OBJECT

public:
    Workbench();
    ~Workbench() override;

    /// Opens what was open when the window was last closed, and keeps the session from then on.
    void restoreSession(WindowSession::Use use = WindowSession::Use::Keep);
    /// Offers the user what programs that have ended hadn't saved. Returns at once.
    void offerRecovery();
    /// Writes the session and what a crash would lose, before it returns, and asks nothing.
    void keepWork();

    Document* newDocument(const DocumentType& type) override;
    Document* openFile(const QString& file) override;
    void openFiles(const QStringList& files);

    QList<Document*> documents() const override;
    Document* currentDocument() const override;
    QWidget& widget() override;

    RecentFiles& recentFiles();
    FilesPanel& filesPanel();
    ConsolePanel& console();
    DocumentCommands& commands();
    QList<DockableWidget*> panels() const;

    /// Returns whether files are being listed or filtered.
    bool isBusy() const;

    void findInFiles();
    void showOptions();

    void showMessage(const QString& text) override;
    void showFailure(const Failure& failure) override;

Q_SIGNALS:
    void currentDocumentChanged(workbench::Document* document);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void makePanels();
    void addPanels();
    void makeMenus();
    void connectFileMenu();
    void connectTransfer();
    void addDocument(Document* document);
    void forgetDocument(Document* document);
    void showStartPage();
    void followHighlighted(DockableWidget* window);
    void showCurrent();
    void showToolBar();
    void showTitle();

    // The window owns the following objects as its children.
    RecentFiles* m_recentFiles;
    DocumentTransfer* m_transfer;
    DocumentOpener* m_opener;
    DocumentCommands* m_commands;
    DocumentRecovery* m_recovery;
    WindowSession* m_session;
    MainToolBar* m_toolBar;
    FileMenu* m_fileMenu;
    FilesPanel* m_files;
    ConsolePanel* m_console;
    LogPanel* m_log;
    FindInFilesDialog* m_find = nullptr;
    QPointer<StartPage> m_startPage;
    QList<Document*> m_used; // in the order of use: the current one is the last
    bool m_isClosing = false;
};

} // namespace workbench
