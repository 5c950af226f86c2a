#include "shell/Workbench.h"

#include "common/file_uri.h"
#include "common/path_names.h"
#include "common/request_manager.h"
#include "common/style_options.h"
#include "common/tell.h"
#include "common/translations.h"
#include "common/window_sheet.h"
#include "documents/FileNameDialog.h"
#include "documents/KnownFile.h"
#include "files/FilesPanel.h"
#include "log/LogPanel.h"
#include "recovery/RecoveryCopy.h"
#include "recovery/RecoveryKeeper.h"
#include "script/ConsolePanel.h"
#include "search/FindInFilesDialog.h"
#include "shell/ClosingChanges.h"
#include "shell/DocumentPrinter.h"
#include "shell/DocumentRecovery.h"
#include "shell/DocumentTransfer.h"
#include "shell/EditMenu.h"
#include "shell/FileMenu.h"
#include "shell/HelpMenu.h"
#include "shell/ModalGuard.h"
#include "shell/ModulesMenu.h"
#include "shell/OptionsDialog.h"
#include "shell/PanelButton.h"
#include "shell/RecentFiles.h"
#include "shell/SessionKeeper.h"
#include "shell/StartPage.h"
#include "shell/ViewMenu.h"
#include "shell/WindowMenu.h"
#include "shell/WindowStack.h"
#include "shell/document_types.h"
#include "shell/file_opening.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/MenuEntry.h>
#include <zvworkbench/Panel.h>

#include <DockFramework/DockableWidget.h>

#include <zvutil/ZvStyleManager.h>

#include <HostSupport/saving.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>

#include <chrono>
#include <exception>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds messageDuration{5'000};

/// Returns one name for a file that can be reached by several, so that it isn't opened twice.
QString canonical(const QString& file)
{
    const QString path = QFileInfo(file).canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(file) : path;
}

QString dialogFilter()
{
    QStringList all;
    QStringList filters;
    for (const DocumentType* const type : documentTypes()) {
        const QString pattern = QLatin1Char('*') + type->extension;
        all.append(pattern);
        filters.append(Workbench::tr("%1 (%2)").arg(type->pluralName, pattern));
    }
    filters.prepend(Workbench::tr("Documents (%1)").arg(all.join(QLatin1Char(' '))));
    filters.append(Workbench::tr("All files (*)"));
    return filters.join(QStringLiteral(";;"));
}

/// Has the tool tip of \p action name its keys.
void showKeys(QAction& action)
{
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    const QString toolTip = action.toolTip();
    if (!keys.isEmpty() && !toolTip.contains(QLatin1Char('(') + keys + QLatin1Char(')')))
        action.setToolTip(Workbench::tr("%1 (%2)").arg(toolTip, keys));
}

/// Returns the size of a window that has never been open: on a small screen it leaves some room around.
QSize firstSize()
{
    return QSize(1'200, 800).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 9 / 10);
}

/// Returns why a copy can't be recovered whose type of documents is \p type, or whose document has other changes.
Failure unrecoverable(const RecoveryCopy& copy, const DocumentType* type)
{
    QString reason = Workbench::tr("The document is open and has been changed already.");
    if (copy.isDamaged)
        reason = Workbench::tr("The copy is damaged.");
    else if (!type)
        reason = Workbench::tr("The module for documents of the type “%1” is not loaded.")
                     .arg(copy.typeId);
    return {Workbench::tr("“%1” was not recovered.").arg(copy.title), reason,
            Workbench::tr("The copy is kept, and offered again at the next start.")};
}

/// Returns one failure that describes all of \p failures.
Failure joined(const QList<Failure>& failures)
{
    constexpr int maxListed = 10;
    if (failures.size() == 1)
        return failures.constFirst();
    QStringList reasons;
    for (const Failure& failure : failures.mid(0, maxListed))
        reasons.append(failure.what + QLatin1Char(' ') + failure.reason);
    if (failures.size() > maxListed)
        reasons.append(QStringLiteral("…"));
    return {Workbench::tr("%n files can't be opened.", nullptr, failures.size()),
            reasons.join(QLatin1Char('\n')), Workbench::tr("Check the files, or open others.")};
}

} // namespace

Workbench::Workbench()
    : m_recentFiles(new RecentFiles(this))
    , m_transfer(new DocumentTransfer(*this))
    , m_recovery(new DocumentRecovery(*this))
    , m_toolBar(new QToolBar(tr("Tools"), this))
    , m_separator(new QAction(this))
{
    installTranslations();
    addOwnDocumentTypes();
    m_separator->setSeparator(true);
    setObjectName(QStringLiteral("workbench"));
    setWindowIcon(QIcon(QStringLiteral(":/workbench/icon.svg")));
    setAttribute(Qt::WA_DeleteOnClose);
    new ModalGuard(*this);
    new WindowStack(*this);
    resize(firstSize());
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setMovable(false);
    addToolBar(m_toolBar);
    makeSessionKeeper();
    makePanels();
    makeMenus();
    connectTransfer();
    statusBar()->setSizeGripEnabled(false);
    keepEditedStyles(*this, [this](const Failure& failure) { showFailure(failure); });
    connect(this, &DockFrame::highlightedChanged, this, &Workbench::followHighlighted);
    connect(m_recentFiles, &RecentFiles::openRequested, this, &Workbench::openFile);
    showStartPage();
    fillToolBar();
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
    delete m_sessionKeeper;
    for (Document* const document : documents())
        document->disconnect(this);
}

void Workbench::makeSessionKeeper()
{
    m_sessionKeeper = new SessionKeeper(
        {[this](QSettings& settings) { saveSession(settings); },
         [this](QSettings& settings) { m_recentFiles->saveState(settings); },
         [this](const QSettings& settings) { m_recentFiles->markSaved(settings); }},
        this);
    m_sessionKeeper->watch(*this);
    connect(m_sessionKeeper, &SessionKeeper::failed, this, [this] {
        statusBar()->showMessage(tr("The open files can't be remembered: “%1” can't be written.")
                                     .arg(QDir::toNativeSeparators(sessionFile())));
    });
    connect(m_recentFiles, &RecentFiles::changed, m_sessionKeeper, &SessionKeeper::noteChange);
    connect(this, &Workbench::currentDocumentChanged, m_sessionKeeper, &SessionKeeper::noteChange);
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
    connect(m_files, &FilesPanel::openRequested, this, &Workbench::openFiles);
    connect(m_files, &FilesPanel::foldersChanged, m_sessionKeeper, &SessionKeeper::noteChange);
    connect(m_console, &ConsolePanel::historyChanged, m_sessionKeeper, &SessionKeeper::noteChange);
    for (DockableWidget* const panel : panels())
        m_sessionKeeper->watch(*panel);
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
    connect(m_fileMenu, &FileMenu::newRequested, this, &Workbench::newDocument);
    connect(m_fileMenu, &FileMenu::openRequested, this, &Workbench::askForFiles);
    connect(m_fileMenu, &FileMenu::saveRequested, this, &Workbench::saveCurrent);
    connect(m_fileMenu, &FileMenu::saveAsRequested, this, &Workbench::saveCurrentAs);
    connect(m_fileMenu, &FileMenu::saveAllRequested, this, &Workbench::saveAll);
    connect(m_fileMenu, &FileMenu::renameRequested, this, &Workbench::renameCurrent);
    connect(m_fileMenu, &FileMenu::importRequested, m_transfer, &DocumentTransfer::importFile);
    connect(m_fileMenu, &FileMenu::exportRequested, this, &Workbench::exportCurrent);
    connect(m_fileMenu, &FileMenu::copyAsUriRequested, this, &Workbench::copyCurrentAsUri);
    connect(m_fileMenu, &FileMenu::closeRequested, this, &Workbench::closeCurrent);
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

void Workbench::restoreSession(SessionUse use)
{
    QSettings settings(sessionFile(), host::settingsFormat());
    m_recentFiles->restoreState(settings);
    m_files->restoreState(settings);
    m_console->restoreState(settings);
    const Session session = Session::restored(settings);
    // Files that no longer exist are skipped without a message; the recent files still name them.
    for (const QString& file : session.files) {
        if (QFileInfo::exists(file))
            openFile(file);
    }
    restoreGeometry(session.geometry);
    restoreLayout(session.layout);
    if (!session.current.isEmpty() && QFileInfo::exists(session.current))
        openFile(session.current);
    if (use == SessionUse::Keep && !m_sessionKeeper->start())
        statusBar()->showMessage(
            tr("Another workbench is open already: it decides what is open at the next start."));
}

void Workbench::offerRecovery()
{
    m_recovery->offer();
}

Document* Workbench::recover(const RecoveryCopy& copy)
{
    const DocumentType* const type = documentTypeOf(copy.typeId);
    DockableWidget* const window = copy.file.isEmpty() ? nullptr : windowOf(canonical(copy.file));
    auto* const open = window ? qobject_cast<Document*>(window->contents()) : nullptr;
    if (copy.isDamaged || !type || (open && open->isModified())) {
        showFailure(unrecoverable(copy, type));
        return nullptr;
    }
    Document* const document = open ? open : makeDocument(*type, copy.title);
    if (!document)
        return nullptr;
    connect(document, &Document::failed, this, &Workbench::showFailure, Qt::UniqueConnection);
    if (!document->recover(filePath(copy.contentPath()), filePath(copy.file))) {
        if (!open)
            document->deleteLater();
        return nullptr;
    }
    if (copy.base)
        KnownFile::of(*document).setState(*copy.base);
    if (!open)
        addDocument(document);
    return document;
}

void Workbench::keepWork()
{
    m_recovery->keeper().writeAll();
    m_sessionKeeper->write();
}

Document* Workbench::newDocument(const DocumentType& type)
{
    Document* const document =
        makeDocument(type, tr("%1 %2").arg(type.name).arg(m_newDocuments + 1));
    if (document) {
        ++m_newDocuments;
        addDocument(document);
    }
    return document;
}

/// Returns a document, or shows the user why a module couldn't make it and returns nullptr.
Document* Workbench::makeDocument(const DocumentType& type, const QString& title)
{
    QString reason;
    try {
        if (Document* const document = type.make(title, this))
            return document;
    } catch (const std::exception& error) {
        reason = QString::fromUtf8(error.what());
    }
    showFailure({tr("The window for “%1” can't be made.").arg(title), reason,
                 tr("Close what you don't need, and try again.")});
    return nullptr;
}

Document* Workbench::openFile(const QString& file)
{
    const QString path = canonical(file);
    if (DockableWidget* const window = windowOf(path)) {
        activate(window);
        return qobject_cast<Document*>(window->contents());
    }
    const DocumentType* const type = typeToOpen(path);
    if (!type) {
        if (m_failures)
            m_failures->append(reasonNotToOpen(file));
        else
            offerToSystem(*this, file);
        return nullptr;
    }
    Document* const document = makeDocument(*type, path);
    if (!document)
        return nullptr;
    connect(document, &Document::failed, this, &Workbench::showFailure);
    if (!loadInto(*document, path)) {
        document->deleteLater();
        return nullptr;
    }
    addDocument(document);
    m_recentFiles->add(path);
    return document;
}

/// Returns the window of the document whose file is \p path, or nullptr.
DockableWidget* Workbench::windowOf(const QString& path) const
{
    for (DockableWidget* const window : dockableWidgets()) {
        const auto* const document = qobject_cast<Document*>(window->contents());
        if (document && !shownFile(*document).isEmpty() && canonical(shownFile(*document)) == path)
            return window;
    }
    return nullptr;
}

void Workbench::openFiles(const QStringList& files)
{
    if (files.size() > maxFilesToOpen) {
        showFailure({tr("%n files are too many to open at once.", nullptr, files.size()),
                     tr("At most %n files can be opened at once.", nullptr, maxFilesToOpen),
                     tr("Choose fewer files.")});
        return;
    }
    if (files.size() == 1) {
        openFile(files.constFirst());
        return;
    }
    // Failures are collected for one message box. A script may call this function while files are
    // read, so the outer list is kept.
    std::optional<QList<Failure>> outer = std::exchange(m_failures, QList<Failure>());
    for (const QString& file : files)
        openFile(file);
    const QList<Failure> failures = *std::exchange(m_failures, std::move(outer));
    if (!failures.isEmpty())
        showFailure(joined(failures));
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
    return m_current;
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
        m_recentFiles->add(canonical(qtFileName(path)));
        showMessage(tr("Saved “%1”").arg(path.toQString()));
    });
    connect(document, &DockableWidgetContents::filesDropped, this, &Workbench::openFiles);
    connect(document, &DockableWidgetContents::titlesChanged, this, &Workbench::showTitle);
    connect(document, &DockableWidgetContents::modifiedChanged, this, &Workbench::showTitle);
    connect(document, &DockableWidgetContents::titlesChanged, m_sessionKeeper,
            &SessionKeeper::noteChange);
    m_recovery->keeper().watch(*document);
    m_sessionKeeper->watch(*addContents(document));
    // The frame has connected before, so it has removed the document from its list when this slot
    // is called.
    connect(document, &QObject::destroyed, this, [this, document] { forgetDocument(document); });
    if (m_startPage)
        m_startPage->close();
}

/// Stops using \p document, which is being destroyed.
void Workbench::forgetDocument(const Document* document)
{
    const bool wasCurrent = m_current == document;
    if (wasCurrent)
        m_current = nullptr;
    if (m_isClosing)
        return;
    m_sessionKeeper->noteChange();
    if (documents().isEmpty())
        showStartPage();
    if (wasCurrent)
        followHighlighted(highlighted());
}

void Workbench::showStartPage()
{
    m_startPage = new StartPage(this);
    connect(m_startPage, &StartPage::newRequested, this, &Workbench::newDocument);
    connect(m_startPage, &StartPage::openRequested, this, &Workbench::askForFiles);
    connect(m_startPage, &StartPage::fileRequested, this, &Workbench::openFile);
    connect(m_recentFiles, &RecentFiles::changed, m_startPage,
            [this, page = m_startPage] { page->showRecentFiles(m_recentFiles->files()); });
    connect(m_startPage, &DockableWidgetContents::filesDropped, this, &Workbench::openFiles);
    m_startPage->showRecentFiles(m_recentFiles->files());
    addContents(m_startPage);
}

void Workbench::followHighlighted(DockableWidget* window)
{
    auto* const document = window ? qobject_cast<Document*>(window->contents()) : nullptr;
    // A user who goes to a panel still works on the document before.
    if (!document && m_current)
        return;
    m_current = document;
    fillToolBar();
    showTitle();
    Q_EMIT currentDocumentChanged(document);
}

/// Names the current document in the window's title, for the list of windows of the desktop.
void Workbench::showTitle()
{
    const QString name = m_current
        ? m_current->shortTitle().replace(QLatin1String("[*]"), QLatin1String("[*][*]"))
        : QString();
    setWindowTitle(m_current ? tr("%1[*] – Workbench").arg(name) : QStringLiteral("Workbench"));
    setWindowModified(m_current && m_current->isModified());
}

void Workbench::fillToolBar()
{
    QList<QAction*> actions = m_fileMenu->toolBarActions();
    if (m_current)
        actions += QList<QAction*>{m_separator} + m_current->toolBarActions();
    m_toolBar->clear();
    m_toolBar->addActions(actions);
    for (QAction* const action : std::as_const(actions))
        showKeys(*action);
}

void Workbench::askForFiles()
{
    openFiles(QFileDialog::getOpenFileNames(this, tr("Open"), QString(), dialogFilter()));
}

void Workbench::saveCurrent()
{
    if (m_current)
        m_current->save();
}

void Workbench::saveCurrentAs()
{
    if (m_current)
        m_current->saveAs();
}

// NOLINTNEXTLINE(readability-make-member-function-const): saving documents changes the window.
void Workbench::saveAll()
{
    for (Document* const document : documents()) {
        if (document->isModified())
            document->save();
    }
}

void Workbench::renameCurrent()
{
    // The current document may be another one, or this one destroyed, when the user has answered.
    const QPointer<Document> document = m_current;
    if (!document || !hasFile(*document))
        return;
    const QFileInfo file(qtFileName(document->filename()));
    const QString renamed = FileNameDialog::ask(this, tr("Rename"), file.absolutePath(),
                                                file.fileName(), requiredExtension(*document));
    if (!document || renamed.isEmpty() || renamed == file.absoluteFilePath())
        return;
    document->enableFileWatcher(false);
    QFile renaming(file.absoluteFilePath());
    if (renaming.rename(renamed)) {
        document->setFilename(filePath(renamed));
        m_recentFiles->add(canonical(renamed));
    } else {
        showFailure(
            {tr("“%1” was not renamed.").arg(QDir::toNativeSeparators(file.absoluteFilePath())),
             renaming.errorString(), tr("Choose another name.")});
    }
    document->enableFileWatcher(true);
}

/// Returns whether \p document has a file. If not, shows a message.
bool Workbench::hasFile(const Document& document)
{
    if (!document.filename().isEmpty())
        return true;
    showMessage(tr("“%1” has no file yet. Save it first.").arg(document.shortTitle()));
    return false;
}

void Workbench::exportCurrent()
{
    if (m_current)
        m_transfer->exportDocument(*m_current);
}

void Workbench::copyCurrentAsUri()
{
    if (!m_current || !hasFile(*m_current))
        return;
    const QString uri = fileUri(qtFileName(m_current->filename()));
    QGuiApplication::clipboard()->setText(uri);
    showMessage(tr("Copied “%1”").arg(uri));
}

void Workbench::closeCurrent()
{
    for (DockableWidget* const window : dockableWidgets()) {
        if (m_current && window->contents() == m_current) {
            window->close();
            return;
        }
    }
}

void Workbench::findInFiles()
{
    if (!m_find) {
        m_find = new FindInFilesDialog(requestManager(), this);
        connect(m_find, &FindInFilesDialog::openRequested, this, &Workbench::openAtLine);
    }
    m_find->setFolders(m_files->folders());
    m_find->show();
    m_find->raise();
    m_find->activateWindow();
}

void Workbench::openAtLine(const QString& file, int line, const QString& text)
{
    if (Document* const document = openFile(file))
        document->showHit(line, text);
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
    if (m_failures)
        m_failures->append(failure);
    else
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
    if (!changes.settle(this, documents()) || !closeAll()) {
        changes.takeBack();
        m_isClosing = false;
        event->ignore();
        return;
    }
    m_recovery->keeper().discardAll();
    m_sessionKeeper->stop();
    const bool isKept = m_sessionKeeper->write();
    DockFrame::closeEvent(event);
    // Other windows, such as the style editor, are closed with the workbench.
    QApplication::closeAllWindows();
    if (!isKept)
        tell(nullptr,
             {tr("The open files won't be reopened at the next start."),
              tr("“%1” can't be written.").arg(QDir::toNativeSeparators(sessionFile())),
              tr("Check that you may write to this file, and that the disk isn't full.")});
}

/// Closes all documents, and notes the session as it was before. Returns false if one stays open.
bool Workbench::closeAll()
{
    QList<QPointer<const Document>> open;
    for (const Document* const document : documents())
        open.append(document);
    const QPointer<const Document> current = open.contains(m_current) ? m_current : nullptr;
    Session session = this->session();
    if (!closeDocuments())
        return false;
    // The documents still exist, since the event loop deletes them later. A document may have got
    // its name only now.
    session.files.clear();
    for (const QPointer<const Document>& document : open) {
        if (document && !document->filename().isEmpty())
            session.files.append(canonical(qtFileName(document->filename())));
    }
    if (current)
        session.current = canonical(qtFileName(current->filename()));
    m_lastSession = session;
    return true;
}

/// Returns the session as it is at this moment.
Session Workbench::session()
{
    nameWindows();
    Session session{{}, {}, saveGeometry(), saveLayout()};
    for (const Document* const document : documents()) {
        if (!document->filename().isEmpty())
            session.files.append(canonical(qtFileName(document->filename())));
    }
    // A closed document is the current one until it is deleted.
    if (m_current && documents().contains(m_current) && !m_current->filename().isEmpty())
        session.current = canonical(qtFileName(m_current->filename()));
    return session;
}

/// Gives the windows of documents names that derive from their files: a layout finds a window by
/// its object name.
void Workbench::nameWindows()
{
    for (DockableWidget* const window : dockableWidgets()) {
        const auto* const document = qobject_cast<Document*>(window->contents());
        if (document && !document->filename().isEmpty())
            window->setObjectName(QStringLiteral("dock:")
                                  + canonical(qtFileName(document->filename())));
    }
}

void Workbench::saveSession(QSettings& settings)
{
    m_recentFiles->saveState(settings);
    m_files->saveState(settings);
    m_console->saveState(settings);
    (m_lastSession ? *m_lastSession : session()).saveTo(settings);
}

} // namespace workbench
