#pragma once

#include <DockFramework/DockFramework_export.h>
#include <DockFramework/DockableWidgetContents.h>

#include <QString>

/// A document in a window of the docking frame.
class DOCKFRAMEWORK_EXPORT ContentWidget : public DockableWidgetContents
{
    Q_OBJECT

public:
    /// \p deleteOnClose has the object deleted once it has been closed.
    ContentWidget(const QString& name, QWidget* parent, bool deleteOnClose);
    ~ContentWidget() override;

    /// The short title, or the name of the kind where there is none.
    QString getShortName() const override;
    /// True.
    bool isContentWidget() const override;
    /// False.
    bool isSystemWidget() const override;

    /// Writes what a crash would lose into \p folder, under \p name. Nothing here.
    virtual void saveSessionBackup(const QString& folder, const QString& name);
    /// The window has become the one that the user works in. Nothing here.
    virtual void widgetHighlightedEvent();
    /// The user works in another window from now on. Nothing here.
    virtual void widgetUnhighlightedEvent();

protected:
    /// Tells of the modified mark, whoever sets it.
    bool event(QEvent* event) override;
};
