#pragma once

#include <DockFramework/DockFramework_export.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QString>

/// A document in a window of the docking frame.
/// @since 0.1 @ingroup host
class DOCKFRAMEWORK_EXPORT ContentWidget : public DockableWidgetContents
{
    Q_OBJECT

public:
    /// A document.
    /// @param name tells the document's window from all others
    /// @param parent owns the document; may be null
    /// @param deleteOnClose whether the object is deleted once it has been closed
    ContentWidget(const QString& name, QWidget* parent, bool deleteOnClose);
    /// Ends the file watcher.
    ~ContentWidget() override;

    /// @return the short title, or `getViewContextName` if that is empty.
    QString getShortName() const override;
    /// @return always true.
    bool isContentWidget() const override;
    /// @return always false.
    bool isSystemWidget() const override;

    /// Called to write what a crash would lose. The base class does nothing.
    /// @param folder where to write
    /// @param name what to call it there
    virtual void saveSessionBackup(const QString& folder, const QString& name);
    /// Called when the user begins to work in this window. The base class does nothing.
    virtual void widgetHighlightedEvent();
    /// Called when the user begins to work in another window. The base class does nothing.
    virtual void widgetUnhighlightedEvent();

protected:
    /// Emits `modifiedChanged` for each change of the modified mark.
    /// @param event any event of the widget
    /// @return what `QWidget::event` returns
    bool event(QEvent* event) override;
};
