#pragma once

#include "shell/Session.h"

#include <zvworkbench/DocumentType.h>
#include <zvworkbench/Failure.h>
#include <zvworkbench/WorkbenchWindow.h>

#include <DockFramework/DockFrame.h>

#include <zvutil/ZvFilePath.h>

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <optional>

class QAction;
class QCloseEvent;
class QSettings;
class QToolBar;

namespace workbench {

class ConsolePanel;
class Document;
class DocumentRecovery;
class DocumentTransfer;
class FileMenu;
class FilesPanel;
class FindInFilesDialog;
class LogPanel;
class RecentFiles;
struct RecoveryCopy;
class SessionKeeper;
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

    enum class SessionUse { Keep, Look };

    /// Opens what was open when the window was last closed. From then on the session is kept as it changes, unless the
    /// window only takes a look at it.
    void restoreSession(SessionUse use = SessionUse::Keep);
    /// Offers the user what programs that have ended hadn't saved. Returns at once.
    void offerRecovery();
    /// Opens a document as a recovery copy has it. If that fails, tells the user why and returns nullptr.
    Document* recover(const RecoveryCopy& copy);
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
    QList<DockableWidget*> panels() const;

    /// Returns whether files are being listed or filtered.
    bool isBusy() const;

    // The menus call these. Those for a document do nothing if there is none.
    void askForFiles();
    void saveCurrent();
    void saveCurrentAs();
    void saveAll();
    void renameCurrent();
    void exportCurrent();
    void copyCurrentAsUri();
    void closeCurrent();
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
    Document* makeDocument(const DocumentType& type, const QString& title);
    void makeMenus();
    void connectFileMenu();
    void connectTransfer();
    void addDocument(Document* document);
    void forgetDocument(const Document* document);
    void showStartPage();
    void followHighlighted(DockableWidget* window);
    void fillToolBar();
    void showTitle();
    bool hasFile(const Document& document);
    void openAtLine(const QString& file, int line, const QString& text);
    void nameWindows();
    bool closeAll();
    void makeSessionKeeper();
    DockableWidget* windowOf(const QString& path) const;
    Session session();
    void saveSession(QSettings& settings);

    // The window owns the following objects as its children.
    RecentFiles* m_recentFiles;
    DocumentTransfer* m_transfer;
    DocumentRecovery* m_recovery;
    SessionKeeper* m_sessionKeeper;
    QToolBar* m_toolBar;
    FileMenu* m_fileMenu;
    QAction* m_separator; // on the tool bar
    FilesPanel* m_files;
    ConsolePanel* m_console;
    LogPanel* m_log;
    FindInFilesDialog* m_find = nullptr;
    QPointer<StartPage> m_startPage;
    Document* m_current = nullptr; // reset while the document is destroyed
    std::optional<QList<Failure>> m_failures; // collected while several files are opened
    std::optional<Session> m_lastSession; // what is kept of a window that has been closed
    int m_newDocuments = 0;
    bool m_isClosing = false;
};

} // namespace workbench
