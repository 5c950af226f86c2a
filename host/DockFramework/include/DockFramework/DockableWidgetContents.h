#pragma once

#include <DockFramework/DockFramework_export.h>
#include <DockFramework/DockLocationPreference.h>
#include <DockFramework/RestoreWidgetInfo.h>

#include <QIcon>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QCloseEvent;
class QContextMenuEvent;
class QDragEnterEvent;
class QDropEvent;

/// What stands inside a window of the docking frame: titles, a modified mark, a watcher of the file
/// behind it, and the questions that the frame asks.
///
/// It works without a frame, too: as a window of its own, or inside another. GUI thread only.
class DOCKFRAMEWORK_EXPORT DockableWidgetContents : public QWidget
{
    Q_OBJECT

public:
    /// \p name tells the window from all others, in a saved layout for example; it is the short and
    /// the long title until there are others.
    DockableWidgetContents(const QString& name, QWidget* parent);
    ~DockableWidgetContents() override;

    /// Whether there are changes that a close would lose. It is `QWidget::isWindowModified`.
    bool isModified() const;
    void setModified(bool modified);

    /// Shown where there is room, a whole path for example.
    QString longTitle() const;
    void setLongTitle(const QString& title);

    /// Shown on tabs and title bars. It is `QWidget::windowTitle`, with the place for the mark.
    QString shortTitle() const;
    void setShortTitle(const QString& title);

    /// Starts or stops watching the file that `getFilename` names at this moment. A file that isn't
    /// there, or goes, is watched for as long as its folder is there.
    void enableFileWatcher(bool enable);
    bool isFileWatcherEnabled() const;

    /// While \p ignore is true, changes of the file aren't reported, and those that have come by
    /// its end never are. Not counted: one call with false ends all.
    void fileWatcherIgnoreChanges(bool ignore);

    /// What kind of document it is, for menus and tool bars that depend on it. The name here.
    virtual QString getViewContextName() const;
    /// For the list of windows in a menu. The short title here.
    virtual QString getMenuTitle() const;
    /// For tabs and title bars. The short title here.
    virtual QString getShortName() const;
    /// The first line of the context menu. `getMenuTitle` here.
    virtual QString getRightClickMenuTitle() const;
    /// Which tool bars belong to it. `getViewContextName` here.
    virtual QString getToolBarContext() const;
    /// Whether each key may enable or disable entries of menus. False here.
    virtual bool updateEnabledMenusOnKeyPress() const;
    /// The script command that opens the window in the next session. Empty here.
    virtual QString getRestoreCommand() const;
    /// The file behind the window, or nothing, as here.
    virtual QString getFilename() const;
    /// Has the next context menu not open.
    virtual void disableContextMenuOnce();
    /// Asked when the window is added to a frame. Among the documents here.
    virtual DockLocationPreference getPreferredDockLocation() const;
    /// Asked when the window floats for the first time. An invalid size, as here, leaves it to Qt.
    virtual QSize getPreferredNewWindowSize() const;
    /// Name, file and command.
    virtual RestoreWidgetInfo getRestoreWidgetInfo() const;
    /// `QWidget::windowIcon` here.
    virtual QIcon getIcon() const;
    /// The window has become the one that the user works in. Nothing here.
    virtual void notifyHighlighted();
    /// The mouse was pressed on the title bar. Nothing here.
    virtual void notifyTitleBarPressed();
    /// Whether it is a document. False here.
    virtual bool isContentWidget() const;
    /// Whether it belongs to the application itself, as a panel does. True here.
    virtual bool isSystemWidget() const;
    /// Reads the file again, as the user has asked for. Nothing here.
    virtual void reloadFile();
    /// Whether `reloadFile` does anything. False here.
    virtual bool canReloadFile() const;
    /// Whether the frame's own context menu opens. True here.
    virtual bool requireDefaultMenu() const;
    /// The window has been docked, or floats from now on. Nothing here.
    virtual void windowChanged();

Q_SIGNALS:
    /// Of a document.
    void modifiedChanged(bool modified);
    void titlesChanged();
    /// Somebody else has changed the file, or removed it.
    void fileChangedOutside(bool exists);
    /// The user wants unsaved changes to be saved before the window closes; if it is still modified
    /// when this returns, it stays open. The question offers it where this is connected.
    void saveRequested();
    /// Files were dropped on the window.
    void filesDropped(const QStringList& filenames);
    /// `enableFileWatcher` was called.
    void fileWatcherEnabled(bool enabled);
    /// `fileWatcherIgnoreChanges` was called.
    void fileWatcherIgnores(bool ignores);

protected:
    /// A menu with what can be done to the window, where `requireDefaultMenu` agrees.
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Files are welcome where `filesDropped` is connected.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    using QWidget::closeEvent;
    /// Lets the window close, or, where there are unsaved changes, as the user decides: the box says
    /// \p question, below it \p details. When it closes, `onClosing` and `callOnCloseScript` are
    /// called and the watcher ends.
    virtual void closeEvent(QCloseEvent* event, const QString& details, const QString& question);
    /// The place for a script that runs when the window closes. Nothing here.
    virtual void callOnCloseScript();
    /// The window closes. Nothing here.
    virtual void onClosing();

public:
    /// The frame has moved the window to another side. Nothing here.
    virtual void notifyLocationChanged(Qt::DockWidgetArea area);

private:
    class Impl;

    bool mayClose(const QString& details, const QString& question);

    std::unique_ptr<Impl> m_implementation;
};
