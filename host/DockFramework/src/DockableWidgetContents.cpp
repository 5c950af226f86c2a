#include <DockFramework/DockableWidgetContents.h>

#include "FileWatcher.h"
#include "plain_text.h"
#include "reload_when_allowed.h"

#include <QAction>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMetaMethod>
#include <QMimeData>
#include <QUrl>

#include <utility>

class DockableWidgetContents::Impl
{
public:
    QString name;
    QString shortTitle;
    QString longTitle;
    FileWatcher watcher;
    bool isContextMenuDisabled = false;
};

namespace {

QStringList localFiles(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}

} // namespace

DockableWidgetContents::DockableWidgetContents(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_implementation(new Impl)
{
    setObjectName(name);
    m_implementation->name = name;
    m_implementation->longTitle = name;
    setShortTitle(name);
    setAcceptDrops(true);
    connect(&m_implementation->watcher, &FileWatcher::changed, this,
            &DockableWidgetContents::fileChangedOutside);
}

DockableWidgetContents::~DockableWidgetContents() = default;

bool DockableWidgetContents::isModified() const
{
    return isWindowModified();
}

void DockableWidgetContents::setModified(bool modified)
{
    if (modified != isModified())
        setWindowModified(modified);
}

QString DockableWidgetContents::longTitle() const
{
    return m_implementation->longTitle;
}

void DockableWidgetContents::setLongTitle(const QString& title)
{
    m_implementation->longTitle = title;
    Q_EMIT titlesChanged();
}

QString DockableWidgetContents::shortTitle() const
{
    return m_implementation->shortTitle;
}

void DockableWidgetContents::setShortTitle(const QString& title)
{
    m_implementation->shortTitle = title;
    setWindowTitle(title + QStringLiteral("[*]"));
    // A screen reader would read the place of the mark, too.
    setAccessibleName(title);
    Q_EMIT titlesChanged();
}

void DockableWidgetContents::enableFileWatcher(bool enable)
{
    if (enable)
        m_implementation->watcher.watch(getFilename());
    else
        m_implementation->watcher.stop();
    Q_EMIT fileWatcherEnabled(enable);
}

bool DockableWidgetContents::isFileWatcherEnabled() const
{
    return m_implementation->watcher.isWatching();
}

void DockableWidgetContents::fileWatcherIgnoreChanges(bool ignore)
{
    m_implementation->watcher.setIgnoring(ignore);
    Q_EMIT fileWatcherIgnores(ignore);
}

QString DockableWidgetContents::getViewContextName() const
{
    return m_implementation->name;
}

QString DockableWidgetContents::getMenuTitle() const
{
    return shortTitle();
}

QString DockableWidgetContents::getShortName() const
{
    return shortTitle();
}

QString DockableWidgetContents::getRightClickMenuTitle() const
{
    return getMenuTitle();
}

QString DockableWidgetContents::getToolBarContext() const
{
    return getViewContextName();
}

bool DockableWidgetContents::updateEnabledMenusOnKeyPress() const
{
    return false;
}

QString DockableWidgetContents::getRestoreCommand() const
{
    return QString();
}

QString DockableWidgetContents::getFilename() const
{
    return QString();
}

void DockableWidgetContents::disableContextMenuOnce()
{
    m_implementation->isContextMenuDisabled = true;
}

DockLocationPreference DockableWidgetContents::getPreferredDockLocation() const
{
    return DockLocationPreference::Documents;
}

QSize DockableWidgetContents::getPreferredNewWindowSize() const
{
    return QSize();
}

RestoreWidgetInfo DockableWidgetContents::getRestoreWidgetInfo() const
{
    return {m_implementation->name, getFilename(), getRestoreCommand()};
}

QIcon DockableWidgetContents::getIcon() const
{
    return windowIcon();
}

void DockableWidgetContents::notifyHighlighted()
{
}

void DockableWidgetContents::notifyTitleBarPressed()
{
}

bool DockableWidgetContents::isContentWidget() const
{
    return false;
}

bool DockableWidgetContents::isSystemWidget() const
{
    return true;
}

void DockableWidgetContents::reloadFile()
{
}

bool DockableWidgetContents::canReloadFile() const
{
    return false;
}

bool DockableWidgetContents::requireDefaultMenu() const
{
    return true;
}

void DockableWidgetContents::windowChanged()
{
}

void DockableWidgetContents::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isDisabled = std::exchange(m_implementation->isContextMenuDisabled, false);
    if (isDisabled || !requireDefaultMenu())
        return;
    QMenu menu(this);
    menu.addSection(getRightClickMenuTitle());
    const QAction* const reload = canReloadFile() ? menu.addAction(tr("&Reload")) : nullptr;
    const QAction* const close = menu.addAction(tr("&Close"));
    const QAction* const chosen = menu.exec(event->globalPos());
    if (!chosen)
        return;
    if (chosen == reload)
        reloadWhenAllowed(*this);
    else if (chosen == close)
        QMetaObject::invokeMethod(this, "close", Qt::QueuedConnection);
}

void DockableWidgetContents::dragEnterEvent(QDragEnterEvent* event)
{
    const bool isWelcome =
        isSignalConnected(QMetaMethod::fromSignal(&DockableWidgetContents::filesDropped));
    if (isWelcome && !localFiles(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
    else
        event->ignore();
}

void DockableWidgetContents::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    Q_EMIT filesDropped(localFiles(*event->mimeData()));
}

void DockableWidgetContents::closeEvent(QCloseEvent* event, const QString& details,
                                        const QString& question)
{
    if (isModified() && !mayClose(details, question)) {
        event->ignore();
        return;
    }
    event->accept();
    onClosing();
    callOnCloseScript();
    enableFileWatcher(false);
}

bool DockableWidgetContents::mayClose(const QString& details, const QString& question)
{
    QMessageBox box(QMessageBox::Warning, getShortName(), question,
                    QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setInformativeText(details);
    showAsPlainText(box);
    box.setDefaultButton(QMessageBox::Cancel);
    if (isSignalConnected(QMetaMethod::fromSignal(&DockableWidgetContents::saveRequested))) {
        box.addButton(QMessageBox::Save);
        box.setDefaultButton(QMessageBox::Save);
    }
    const int answer = box.exec();
    if (answer == QMessageBox::Save) {
        Q_EMIT saveRequested();
        return !isModified();
    }
    return answer == QMessageBox::Discard;
}

void DockableWidgetContents::callOnCloseScript()
{
}

void DockableWidgetContents::onClosing()
{
}

void DockableWidgetContents::notifyLocationChanged(Qt::DockWidgetArea /*area*/)
{
}
