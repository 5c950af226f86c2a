#include <DockFramework/DockableWidget.h>

#include "DockTitleBar.h"
#include "ReloadBar.h"
#include "reload_when_allowed.h"

#include <DockFramework/ContentWidget.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QCloseEvent>
#include <QEvent>
#include <QVBoxLayout>

DockableWidget::DockableWidget(DockableWidgetContents* contents, QWidget* parent)
    : QDockWidget(parent)
    , m_contents(contents)
    , m_titleBar(new DockTitleBar(this))
{
    setObjectName(QStringLiteral("dock:") + contents->objectName());
    auto* const border = new QWidget(this);
    border->setObjectName(QStringLiteral("borderObject"));
    m_reloadBar = new ReloadBar(border);
    auto* const layout = new QVBoxLayout(border);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_reloadBar);
    layout->addWidget(contents, 1);
    setWidget(border);
    setTitleBarWidget(m_titleBar);
    m_titleBar->installEventFilter(this);
    setFocusProxy(contents);
    setWindowIcon(contents->getIcon());
    showTitles();

    connect(contents, &DockableWidgetContents::titlesChanged, this, &DockableWidget::showTitles);
    connect(contents, &DockableWidgetContents::modifiedChanged, this, &DockableWidget::showTitles);
    connect(contents, &DockableWidgetContents::fileChangedOutside, this,
            &DockableWidget::offerToReload);
    connect(contents, &QObject::destroyed, this, [this] {
        m_contents = nullptr;
        deleteLater();
    });
    connect(m_titleBar, &DockTitleBar::closeRequested, this, &QWidget::close);
    connect(m_titleBar, &DockTitleBar::floatRequested, this,
            [this] { setFloating(!isFloating()); });
    connect(m_titleBar, &DockTitleBar::reloadRequested, contents,
            [contents] { reloadWhenAllowed(*contents); });
    connect(m_titleBar, &DockTitleBar::aboutToShowMenu, contents,
            [this, contents] { m_titleBar->setState(isFloating(), contents->canReloadFile()); });
    // Reload without a question: the bar has already warned of lost changes.
    connect(m_reloadBar, &ReloadBar::reloadRequested, contents,
            &DockableWidgetContents::reloadFile);
    // Hide the bar: the watcher was set to another file, or to one that has just been read.
    connect(contents, &DockableWidgetContents::fileWatcherEnabled, m_reloadBar, &QWidget::hide);
    connect(contents, &DockableWidgetContents::fileWatcherIgnores, m_reloadBar,
            [this](bool ignores) {
                const bool isSaved = !ignores && m_contents && !m_contents->isModified();
                if (isSaved)
                    m_reloadBar->hide();
            });
    connect(this, &QDockWidget::topLevelChanged, this, &DockableWidget::applyFloating);
    connect(this, &QDockWidget::dockLocationChanged, contents,
            &DockableWidgetContents::notifyLocationChanged);
}

DockableWidget::~DockableWidget()
{
    // Disconnect the contents: they are destroyed with the window and would delete it a second
    // time.
    if (m_contents)
        m_contents->disconnect(this);
}

DockableWidgetContents* DockableWidget::contents() const
{
    return m_contents;
}

bool DockableWidget::isHighlighted() const
{
    return m_isHighlighted;
}

void DockableWidget::setHighlighted(bool highlighted)
{
    if (m_isHighlighted == highlighted)
        return;
    m_isHighlighted = highlighted;
    m_titleBar->setHighlighted(highlighted);
    auto* const document = qobject_cast<ContentWidget*>(m_contents);
    if (highlighted) {
        if (m_contents)
            m_contents->notifyHighlighted();
        if (document)
            document->widgetHighlightedEvent();
    } else if (document) {
        document->widgetUnhighlightedEvent();
    }
}

void DockableWidget::closeEvent(QCloseEvent* event)
{
    if (m_contents && !m_contents->close()) {
        event->ignore();
        return;
    }
    // Contents that aren't deleted on close are shown again along with the window.
    if (m_contents && !m_contents->testAttribute(Qt::WA_DeleteOnClose))
        m_contents->show();
    QDockWidget::closeEvent(event);
}

bool DockableWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_titleBar && event->type() == QEvent::MouseButtonPress && m_contents)
        m_contents->notifyTitleBarPressed();
    return QDockWidget::eventFilter(watched, event);
}

void DockableWidget::showTitles()
{
    QString title = m_contents->getShortName();
    // The title of a docked window is the text of a tab and of a menu entry, where an ampersand
    // marks a key.
    if (!isFloating())
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
    setWindowTitle(title + QStringLiteral("[*]"));
    setAccessibleName(m_contents->getShortName());
    setWindowModified(m_contents->isModified());
    const QString mark = m_contents->isModified() ? QStringLiteral("*") : QString();
    m_titleBar->setTitles(m_contents->getShortName() + mark, m_contents->longTitle());
}

void DockableWidget::offerToReload(bool exists)
{
    m_reloadBar->offer(exists, m_contents->canReloadFile(), m_contents->isModified());
}

void DockableWidget::applyFloating(bool floating)
{
    if (!m_contents)
        return;
    const QSize size = m_contents->getPreferredNewWindowSize();
    if (floating && !m_hasFloated && size.isValid())
        resize(size);
    m_hasFloated = m_hasFloated || floating;
    showTitles();
    m_contents->windowChanged();
}
