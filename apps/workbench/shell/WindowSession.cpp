#include "shell/WindowSession.h"

#include "common/path_names.h"
#include "common/tell.h"
#include "files/FilesPanel.h"
#include "script/ConsolePanel.h"
#include "shell/RecentFiles.h"
#include "shell/SessionKeeper.h"
#include "shell/Workbench.h"
#include "shell/file_opening.h"

#include <zvworkbench/Document.h>

#include <DockFramework/DockableWidget.h>

#include <HostSupport/saving.h>

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSettings>
#include <QStatusBar>

namespace workbench {

namespace {

/// Returns the name by which the session remembers the file of \p document; empty if it has none.
QString fileOf(const Document& document)
{
    return document.filename().isEmpty() ? QString()
                                         : canonicalName(qtFileName(document.filename()));
}

/// Opens a file of the last session. Nobody is asked at the start: one that no longer exists is skipped without a
/// message, as the recent files still name it, and the log tells of one that is no document any more.
void reopen(Workbench& window, const QString& file)
{
    if (!QFileInfo::exists(file))
        return;
    if (typeToOpen(canonicalName(file)))
        window.openFile(file);
    else
        logFailure(reasonNotToOpen(file));
}

} // namespace

WindowSession::WindowSession(Workbench& window)
    : QObject(&window)
    , m_window(window)
    , m_keeper(new SessionKeeper(
          {[this](QSettings& settings) { save(settings); },
           [this](QSettings& settings) { m_window.recentFiles().saveState(settings); },
           [this](const QSettings& settings) { m_window.recentFiles().markSaved(settings); }},
          this))
{
    m_keeper->watch(window);
    connect(m_keeper, &SessionKeeper::failed, this, [this] {
        m_window.statusBar()->showMessage(
            tr("The open files can't be remembered: “%1” can't be written.")
                .arg(QDir::toNativeSeparators(sessionFile())));
    });
    connect(&window.recentFiles(), &RecentFiles::changed, m_keeper, &SessionKeeper::noteChange);
    connect(&window, &Workbench::currentDocumentChanged, m_keeper, &SessionKeeper::noteChange);
}

SessionKeeper& WindowSession::keeper()
{
    return *m_keeper;
}

void WindowSession::restore(Use use)
{
    QSettings settings(sessionFile(), host::settingsFormat());
    m_window.recentFiles().restoreState(settings);
    m_window.filesPanel().restoreState(settings);
    m_window.console().restoreState(settings);
    const Session session = Session::restored(settings);
    const bool isOwner = use == Use::Look || m_keeper->own();
    if (isOwner) {
        for (const QString& file : session.files)
            reopen(m_window, file);
    } else {
        m_window.statusBar()->showMessage(tr(
            "Another workbench is open already: it has the files of the last session, and decides "
            "what is open at the next start."));
    }
    m_window.restoreGeometry(session.geometry);
    m_window.restoreLayout(session.layout);
    if (isOwner && session.files.contains(session.current))
        reopen(m_window, session.current);
    if (use == Use::Keep)
        m_keeper->start();
}

bool WindowSession::closeDocuments()
{
    QList<QPointer<const Document>> open;
    for (const Document* const document : m_window.documents())
        open.append(document);
    const Document* const highlighted = m_window.currentDocument();
    const QPointer<const Document> current = open.contains(highlighted) ? highlighted : nullptr;
    Session session = now();
    if (!m_window.closeDocuments())
        return false;
    // The documents still exist, since the event loop deletes them later. A document may have got
    // its name only now.
    session.files.clear();
    for (const QPointer<const Document>& document : open) {
        if (document && !document->filename().isEmpty())
            session.files.append(fileOf(*document));
    }
    if (current)
        session.current = fileOf(*current);
    m_last = session;
    return true;
}

/// Returns the session as it is at this moment.
Session WindowSession::now()
{
    nameWindows();
    Session session{{}, {}, m_window.saveGeometry(), m_window.saveLayout()};
    for (const Document* const document : m_window.documents()) {
        if (!document->filename().isEmpty())
            session.files.append(fileOf(*document));
    }
    // A closed document is the current one until it is deleted.
    Document* const current = m_window.currentDocument();
    if (current && m_window.documents().contains(current))
        session.current = fileOf(*current);
    return session;
}

/// Gives the windows of documents names that derive from their files: a layout finds a window by
/// its object name.
void WindowSession::nameWindows()
{
    for (DockableWidget* const window : m_window.dockableWidgets()) {
        const auto* const document = qobject_cast<Document*>(window->contents());
        if (document && !document->filename().isEmpty())
            window->setObjectName(QStringLiteral("dock:") + fileOf(*document));
    }
}

void WindowSession::save(QSettings& settings)
{
    m_window.recentFiles().saveState(settings);
    m_window.filesPanel().saveState(settings);
    m_window.console().saveState(settings);
    (m_last ? *m_last : now()).saveTo(settings);
}

} // namespace workbench
