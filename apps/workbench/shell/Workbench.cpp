#include "shell/Workbench.h"

#include "common/path_names.h"
#include "common/request_manager.h"
#include "common/style_options.h"
#include "common/tell.h"
#include "common/translations.h"
#include "common/window_sheet.h"
#include "files/FilesPanel.h"
#include "log/LogPanel.h"
#include "recovery/RecoveryKeeper.h"
#include "script/ConsolePanel.h"
#include "search/FindInFilesDialog.h"
#include "shell/ClosingChanges.h"
#include "shell/DocumentCommands.h"
#include "shell/DocumentOpener.h"
#include "shell/DocumentPrinter.h"
#include "shell/DocumentRecovery.h"
#include "shell/DocumentTransfer.h"
#include "shell/EditMenu.h"
#include "shell/FileMenu.h"
#include "shell/HelpMenu.h"
#include "shell/MainToolBar.h"
#include "shell/ModalGuard.h"
#include "shell/ModulesMenu.h"
#include "shell/OptionsDialog.h"
#include "shell/PanelButton.h"
#include "shell/RecentFiles.h"
#include "shell/SessionKeeper.h"
#include "shell/StartPage.h"
#include "shell/ViewMenu.h"
#include "shell/WindowMenu.h"
#include "shell/WindowSession.h"
#include "shell/WindowStack.h"
#include "shell/document_types.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/MenuEntry.h>
#include <zvworkbench/Panel.h>

#include <DockFramework/DockableWidget.h>

#include <zvutil/ZvStyleManager.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>

#include <algorithm>
#include <chrono>
#include <exception>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds messageDuration{5'000};

/// Returns the size of a window that has never been open: on a small screen it leaves some room around.
QSize firstSize()
{
    return QSize(1'200, 800).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 9 / 10);
}

} // namespace

Workbench::Workbench()
    : m_recentFiles(new RecentFiles(this))
    , m_transfer(new DocumentTransfer(*this))
    , m_opener(new DocumentOpener(*this))
    , m_commands(new DocumentCommands(*this, *m_transfer))
    , m_recovery(new DocumentRecovery(*this, *m_opener))
    , m_session(new WindowSession(*this))
    , m_toolBar(new MainToolBar(this))
{
    installTranslations();
    addOwnDocumentTypes();
    setObjectName(QStringLiteral("workbench"));
    setWindowIcon(QIcon(QStringLiteral(":/workbench/icon.svg")));
    setAttribute(Qt::WA_DeleteOnClose);
    new ModalGuard(*this);
    new WindowStack(*this);
    resize(firstSize());
    addToolBar(m_toolBar);
    makePanels();
    makeMenus();
    connectTransfer();
    statusBar()->setSizeGripEnabled(false);
    keepEditedStyles(*this, [this](const Failure& failure) { showFailure(failure); });
    connect(this, &DockFrame::highlightedChanged, this, &Workbench::followHighlighted);
    connect(m_recentFiles, &RecentFiles::openRequested, m_opener, &DocumentOpener::openFile);
    connect(m_opener, &DocumentOpener::made, this, &Workbench::addDocument);
    connect(m_opener, &DocumentOpener::fileOpened, m_recentFiles, &RecentFiles::add);
    showStartPage();
    showToolBar();
    showTitle();
    setStyleSheet(windowSheet());
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            [this] { setStyleSheet(windowSheet()); });
}

Workbench::~Workbench()
{
    // The documents are destroyed with this window, and their signals must not reach it any more.
    m_isClosing = true;
    // They follow the documents: what isn't saved now keeps its copy, and the session its files.
    delete m_recovery;
    delete m_session;
    for (Document* const document : documents())
        document->disconnect(this);
}

void Workbench::makePanels()
{
    m_files = new FilesPanel(this);
    m_console = new ConsolePanel(this);
    m_log = new LogPanel(this);
    addContents(m_files);
    DockableWidget* const console = addContents(m_console);
    DockableWidget* const log = addContents(m_log);
    tabifyDockWidget(console, log);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    addPanels();
    console->raise();
    // These two have nothing to show at first, and leave their room to the documents.
    for (DockableWidget* const panel : {console, log}) {
        statusBar()->addPermanentWidget(new PanelButton(*this, *panel));
        panel->close();
    }
    connect(m_files, &FilesPanel::openRequested, m_opener, &DocumentOpener::openFiles);
    connect(m_files, &FilesPanel::foldersChanged, &m_session->keeper(), &SessionKeeper::noteChange);
    connect(m_console, &ConsolePanel::historyChanged, &m_session->keeper(),
            &SessionKeeper::noteChange);
    for (DockableWidget* const panel : panels())
        m_session->keeper().watch(*panel);
}

/// Adds the panels of modules; one that can't be made is left out, and the user is told.
void Workbench::addPanels()
{
    for (const Panel* const panel : addedPanels()) {
        QString reason;
        try {
            if (DockableWidgetContents* const contents = panel->make(*this, this)) {
                addContents(contents);
                continue;
            }
        } catch (const std::exception& error) {
            reason = QString::fromUtf8(error.what());
        }
        showFailure({tr("The panel “%1” can't be shown.").arg(panel->id), reason,
                     tr("The module that it belongs to may be out of order.")});
    }
}

void Workbench::makeMenus()
{
    m_fileMenu = new FileMenu(*m_recentFiles, this);
    auto* const edit = new EditMenu(*this);
    auto* const view = new ViewMenu(panels(), this);
    auto* const windows = new WindowMenu(*this);
    for (QMenu* const menu : std::initializer_list<QMenu*>{m_fileMenu, edit, view})
        menuBar()->addMenu(menu);
    if (!addedMenuEntries().empty())
        menuBar()->addMenu(new ModulesMenu(*this, this));
    menuBar()->addMenu(windows);
    menuBar()->addMenu(new HelpMenu(*this));
    connectFileMenu();
    connect(edit, &EditMenu::findInFilesRequested, this, &Workbench::findInFiles);
    connect(view, &ViewMenu::optionsRequested, this, &Workbench::showOptions);
    connect(view, &ViewMenu::failed, this, &Workbench::showFailure);
    connect(this, &Workbench::currentDocumentChanged, edit, &EditMenu::setDocument);
    connect(this, &Workbench::currentDocumentChanged, windows, &WindowMenu::setDocument);
}

void Workbench::connectFileMenu()
{
    connect(m_fileMenu, &FileMenu::newRequested, m_opener, &DocumentOpener::newDocument);
    connect(m_fileMenu, &FileMenu::openRequested, m_opener, &DocumentOpener::askForFiles);
    connect(m_fileMenu, &FileMenu::saveRequested, m_commands, &DocumentCommands::save);
    connect(m_fileMenu, &FileMenu::saveAsRequested, m_commands, &DocumentCommands::saveAs);
    connect(m_fileMenu, &FileMenu::saveAllRequested, m_commands, &DocumentCommands::saveAll);
    connect(m_fileMenu, &FileMenu::renameRequested, m_commands, &DocumentCommands::rename);
    connect(m_fileMenu, &FileMenu::importRequested, m_transfer, &DocumentTransfer::importFile);
    connect(m_fileMenu, &FileMenu::exportRequested, m_commands, &DocumentCommands::exportFile);
    connect(m_fileMenu, &FileMenu::copyAsUriRequested, m_commands, &DocumentCommands::copyAsUri);
    connect(m_fileMenu, &FileMenu::closeRequested, m_commands, &DocumentCommands::close);
    connect(m_fileMenu, &FileMenu::quitRequested, this, &QWidget::close);
    connect(this, &Workbench::currentDocumentChanged, m_fileMenu,
            [this](const Document* document) { m_fileMenu->setDocument(document); });
    auto* const printer = new DocumentPrinter(*this, *m_transfer);
    connect(this, &Workbench::currentDocumentChanged, printer, &DocumentPrinter::setDocument);
    connect(m_fileMenu, &FileMenu::printRequested, printer, &DocumentPrinter::print);
    connect(m_fileMenu, &FileMenu::printPreviewRequested, printer, &DocumentPrinter::preview);
    connect(printer, &DocumentPrinter::failed, this, &Workbench::showFailure);
    connect(printer, &DocumentPrinter::printed, this, &Workbench::showMessage);
}

void Workbench::connectTransfer()
{
    connect(m_transfer, &DocumentTransfer::exported, this, [this](const zvutil::ZvFilePath& path) {
        showMessage(tr("Exported to “%1”").arg(path.toQString()));
    });
    connect(m_transfer, &DocumentTransfer::imported, this,
            [this](const zvutil::ZvFilePath& path) { openFile(qtFileName(path)); });
    connect(m_transfer, &DocumentTransfer::failed, this, &Workbench::showFailure);
    connect(m_transfer, &DocumentTransfer::finished, this, &QWidget::close);
}

void Workbench::restoreSession(WindowSession::Use use)
{
    m_session->restore(use);
}

void Workbench::offerRecovery()
{
    m_recovery->offer();
}

void Workbench::keepWork()
{
    m_recovery->keeper().writeAll();
    m_session->keeper().write();
}

Document* Workbench::newDocument(const DocumentType& type)
{
    return m_opener->newDocument(type);
}

Document* Workbench::openFile(const QString& file)
{
    return m_opener->openFile(file);
}

void Workbench::openFiles(const QStringList& files)
{
    m_opener->openFiles(files);
}

QList<Document*> Workbench::documents() const
{
    QList<Document*> documents;
    for (const DockableWidget* const window : dockableWidgets()) {
        auto* const document = qobject_cast<Document*>(window->contents());
        // A closed document is hidden until the event loop deletes it.
        if (document && !window->isHidden())
            documents.append(document);
    }
    return documents;
}

Document* Workbench::currentDocument() const
{
    return m_used.isEmpty() ? nullptr : m_used.constLast();
}

QWidget& Workbench::widget()
{
    return *this;
}

RecentFiles& Workbench::recentFiles()
{
    return *m_recentFiles;
}

FilesPanel& Workbench::filesPanel()
{
    return *m_files;
}

ConsolePanel& Workbench::console()
{
    return *m_console;
}

DocumentCommands& Workbench::commands()
{
    return *m_commands;
}

QList<DockableWidget*> Workbench::panels() const
{
    QList<DockableWidget*> panels;
    for (DockableWidget* const window : dockableWidgets()) {
        if (!window->contents()->isContentWidget())
            panels.append(window);
    }
    return panels;
}

bool Workbench::isBusy() const
{
    return m_files->isWorking();
}

void Workbench::addDocument(Document* document)
{
    connect(document, &Document::failed, this, &Workbench::showFailure, Qt::UniqueConnection);
    connect(document, &ZvContentWidget::saved, this, [this](const zvutil::ZvFilePath& path) {
        m_recentFiles->add(canonicalName(qtFileName(path)));
        showMessage(tr("Saved “%1”").arg(path.toQString()));
    });
    connect(document, &DockableWidgetContents::filesDropped, m_opener, &DocumentOpener::openFiles);
    connect(document, &DockableWidgetContents::titlesChanged, this, &Workbench::showTitle);
    connect(document, &DockableWidgetContents::modifiedChanged, this, &Workbench::showTitle);
    connect(document, &DockableWidgetContents::titlesChanged, &m_session->keeper(),
            &SessionKeeper::noteChange);
    m_recovery->keeper().watch(*document);
    m_session->keeper().watch(*addContents(document));
    // The frame has connected before, so it has removed the document from its list when this slot
    // is called.
    connect(document, &QObject::destroyed, this, [this, document] { forgetDocument(document); });
    if (m_startPage)
        m_startPage->close();
}

/// Stops using \p document, which is being destroyed.
void Workbench::forgetDocument(Document* document)
{
    const Document* const before = currentDocument();
    m_used.removeOne(document);
    if (m_isClosing)
        return;
    m_session->keeper().noteChange();
    // Those that have been closed as well are destroyed next.
    const QList<Document*> open = documents();
    m_used.erase(std::remove_if(m_used.begin(), m_used.end(),
                                [&open](Document* used) { return !open.contains(used); }),
                 m_used.end());
    if (open.isEmpty())
        showStartPage();
    if (currentDocument() == before)
        return;
    showCurrent();
    // Beside others no tab comes to the front, so the frame has highlighted none of them.
    for (DockableWidget* const window : dockableWidgets()) {
        if (currentDocument() && window->contents() == currentDocument()) {
            activate(window);
            return;
        }
    }
}

void Workbench::showStartPage()
{
    m_startPage = new StartPage(this);
    connect(m_startPage, &StartPage::newRequested, m_opener, &DocumentOpener::newDocument);
    connect(m_startPage, &StartPage::openRequested, m_opener, &DocumentOpener::askForFiles);
    connect(m_startPage, &StartPage::fileRequested, m_opener, &DocumentOpener::openFile);
    connect(m_recentFiles, &RecentFiles::changed, m_startPage,
            [this, page = m_startPage] { page->showRecentFiles(m_recentFiles->files()); });
    connect(m_startPage, &DockableWidgetContents::filesDropped, m_opener,
            &DocumentOpener::openFiles);
    m_startPage->showRecentFiles(m_recentFiles->files());
    addContents(m_startPage);
}

void Workbench::followHighlighted(DockableWidget* window)
{
    auto* const document = window ? qobject_cast<Document*>(window->contents()) : nullptr;
    // A user who goes to a panel still works on the document before.
    if (!document || document == currentDocument())
        return;
    m_used.removeOne(document);
    m_used.append(document);
    showCurrent();
}

/// Has the window offer what the current document does.
void Workbench::showCurrent()
{
    showToolBar();
    showTitle();
    Q_EMIT currentDocumentChanged(currentDocument());
}

/// Names the current document in the window's title, for the list of windows of the desktop.
void Workbench::showTitle()
{
    const Document* const current = currentDocument();
    const QString name = current
        ? current->shortTitle().replace(QLatin1String("[*]"), QLatin1String("[*][*]"))
        : QString();
    setWindowTitle(current ? tr("%1[*] – Workbench").arg(name) : QStringLiteral("Workbench"));
    setWindowModified(current && current->isModified());
}

void Workbench::showToolBar()
{
    const Document* const current = currentDocument();
    m_toolBar->showActions(m_fileMenu->toolBarActions(),
                           current ? current->toolBarActions() : QList<QAction*>());
}

void Workbench::findInFiles()
{
    if (!m_find) {
        m_find = new FindInFilesDialog(requestManager(), this);
        connect(m_find, &FindInFilesDialog::openRequested, m_opener, &DocumentOpener::openAtLine);
    }
    m_find->setFolders(m_files->folders());
    m_find->show();
    m_find->raise();
    m_find->activateWindow();
}

void Workbench::showOptions()
{
    auto* const dialog = new OptionsDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &OptionsDialog::applied, this, [] { applyStyleOptions(); });
    dialog->open();
}

void Workbench::showMessage(const QString& text)
{
    statusBar()->showMessage(text, static_cast<int>(messageDuration.count()));
}

void Workbench::showFailure(const Failure& failure)
{
    if (!m_opener->collect(failure))
        tell(this, failure);
}

void Workbench::closeEvent(QCloseEvent* event)
{
    // The window ignores requests while it closes. If transfers are running, their end closes it.
    if (m_isClosing || m_transfer->awaitRunning()) {
        event->ignore();
        return;
    }
    m_isClosing = true;
    ClosingChanges changes;
    if (!changes.settle(this, documents()) || !m_session->closeDocuments()) {
        changes.takeBack();
        m_isClosing = false;
        event->ignore();
        return;
    }
    m_recovery->keeper().discardAll();
    m_session->keeper().stop();
    const bool isKept = m_session->keeper().write();
    DockFrame::closeEvent(event);
    // Other windows, such as the style editor, are closed with the workbench.
    QApplication::closeAllWindows();
    if (!isKept)
        tell(nullptr,
             {tr("The open files won't be reopened at the next start."),
              tr("“%1” can't be written.").arg(QDir::toNativeSeparators(sessionFile())),
              tr("Check that you may write to this file, and that the disk isn't full.")});
}

} // namespace workbench
