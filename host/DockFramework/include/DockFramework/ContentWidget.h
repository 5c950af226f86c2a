#pragma once

#include <DockFramework/DockFramework_export.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QString>

/// A document in a window of the docking frame.
class DOCKFRAMEWORK_EXPORT ContentWidget : public DockableWidgetContents
{
    Q_OBJECT

public:
    /// A document named \p name; \p parent, which may be null, owns it. \p deleteOnClose has the
    /// object deleted once it has been closed.
    ContentWidget(const QString& name, QWidget* parent, bool deleteOnClose);
    /// Ends the file watcher.
    ~ContentWidget() override;

    /// The short title, or `getViewContextName` if that is empty.
    QString getShortName() const override;
    /// Always true.
    bool isContentWidget() const override;
    /// Always false.
    bool isSystemWidget() const override;

    /// Called to write what a crash would lose into \p folder, under \p name. The base class does
    /// nothing.
    virtual void saveSessionBackup(const QString& folder, const QString& name);
    /// Called when the user begins to work in this window. The base class does nothing.
    virtual void widgetHighlightedEvent();
    /// Called when the user begins to work in another window. The base class does nothing.
    virtual void widgetUnhighlightedEvent();

protected:
    /// Emits `modifiedChanged` for each change of the modified mark.
    bool event(QEvent* event) override;
};
