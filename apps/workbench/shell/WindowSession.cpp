#include "shell/WindowSession.h"

#include "common/path_names.h"
#include "files/FilesPanel.h"
#include "script/ConsolePanel.h"
#include "shell/RecentFiles.h"
#include "shell/SessionKeeper.h"
#include "shell/Workbench.h"

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
    // Files that no longer exist are skipped without a message; the recent files still name them.
    for (const QString& file : session.files) {
        if (QFileInfo::exists(file))
            m_window.openFile(file);
    }
    m_window.restoreGeometry(session.geometry);
    m_window.restoreLayout(session.layout);
    if (!session.current.isEmpty() && QFileInfo::exists(session.current))
        m_window.openFile(session.current);
    if (use == Use::Keep && !m_keeper->start())
        m_window.statusBar()->showMessage(
            tr("Another workbench is open already: it decides what is open at the next start."));
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
