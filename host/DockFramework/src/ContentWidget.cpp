#include <DockFramework/ContentWidget.h>

#include <QEvent>

ContentWidget::ContentWidget(const QString& name, QWidget* parent, bool deleteOnClose)
    : DockableWidgetContents(name, parent)
{
    setAttribute(Qt::WA_DeleteOnClose, deleteOnClose);
}

ContentWidget::~ContentWidget() = default;

QString ContentWidget::getShortName() const
{
    return shortTitle().isEmpty() ? getViewContextName() : shortTitle();
}

bool ContentWidget::isContentWidget() const
{
    return true;
}

bool ContentWidget::isSystemWidget() const
{
    return false;
}

void ContentWidget::saveSessionBackup(const QString& /*folder*/, const QString& /*name*/)
{
}

void ContentWidget::widgetHighlightedEvent()
{
}

void ContentWidget::widgetUnhighlightedEvent()
{
}

bool ContentWidget::event(QEvent* event)
{
    if (event->type() == QEvent::ModifiedChange)
        Q_EMIT modifiedChanged(isModified());
    return DockableWidgetContents::event(event);
}
