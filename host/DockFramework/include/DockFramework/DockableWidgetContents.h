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

/// The contents of a window of the docking frame: titles, a modified mark, a watcher of the file that
/// it shows, and the questions that the frame asks.
///
/// Works without a frame, too: as a window of its own, or inside another. GUI thread only.
/// @since 0.1 @ingroup host
class DOCKFRAMEWORK_EXPORT DockableWidgetContents : public QWidget
{
    Q_OBJECT

public:
    /// Contents that aren't in a frame yet.
    /// @param name tells the window from all others, in a saved layout for example; it is the short
    /// and the long title until there are others
    /// @param parent owns the contents; may be null
    DockableWidgetContents(const QString& name, QWidget* parent);
    /// Ends the file watcher.
    ~DockableWidgetContents() override;

    /// @return whether there are changes that a close would lose: `QWidget::isWindowModified`.
    bool isModified() const;
    /// Sets or clears the modified mark.
    /// @param modified whether there are changes that a close would lose
    void setModified(bool modified);

    /// @return the title where there is room, for example a whole path.
    QString longTitle() const;
    /// Sets the long title.
    /// @param title plain text
    void setLongTitle(const QString& title);

    /// @return the title on tabs and title bars: `QWidget::windowTitle` without the place for the
    /// mark.
    QString shortTitle() const;
    /// Sets the short title.
    /// @param title plain text; Qt's place for the modified mark is added
    void setShortTitle(const QString& title);

    /// Starts or stops watching the file that `getFilename` names at this moment. A file that
    /// doesn't exist, or is removed, is watched as long as its folder exists.
    /// @param enable whether to watch
    void enableFileWatcher(bool enable);
    /// @return whether a file is being watched.
    bool isFileWatcherEnabled() const;

    /// Suppresses reports of changes of the file; changes until a call with false are never
    /// reported. Calls aren't counted: one with false ends all.
    /// @param ignore whether to suppress them
    void fileWatcherIgnoreChanges(bool ignore);

    /// @return the kind of document, for menus and tool bars that depend on it; by default the
    /// name.
    virtual QString getViewContextName() const;
    /// @return the text for the list of windows in a menu; by default the short title.
    virtual QString getMenuTitle() const;
    /// @return the text for tabs and title bars; by default the short title.
    virtual QString getShortName() const;
    /// @return the first line of the context menu; by default `getMenuTitle`.
    virtual QString getRightClickMenuTitle() const;
    /// @return the name of the tool bars that belong to the window; by default
    /// `getViewContextName`.
    virtual QString getToolBarContext() const;
    /// @return whether each key may enable or disable entries of menus; by default false.
    virtual bool updateEnabledMenusOnKeyPress() const;
    /// @return the script command that opens the window in the next session; by default empty.
    virtual QString getRestoreCommand() const;
    /// @return the path of the file that the window shows; by default empty.
    virtual QString getFilename() const;
    /// Suppresses the next context menu.
    virtual void disableContextMenuOnce();
    /// @return the place when the window is added to a frame; by default among the documents.
    virtual DockLocationPreference getPreferredDockLocation() const;
    /// @return the size when the window floats for the first time; an invalid size, the default,
    /// leaves it to Qt.
    virtual QSize getPreferredNewWindowSize() const;
    /// @return the name, file and command that a session keeps of the window.
    virtual RestoreWidgetInfo getRestoreWidgetInfo() const;
    /// @return the icon of tabs and menus; by default `QWidget::windowIcon`.
    virtual QIcon getIcon() const;
    /// Called when the user begins to work in this window. The base class does nothing.
    virtual void notifyHighlighted();
    /// Called when the mouse is pressed on the title bar. The base class does nothing.
    virtual void notifyTitleBarPressed();
    /// @return whether the window is a document; by default false.
    virtual bool isContentWidget() const;
    /// @return whether the window belongs to the application itself, as a panel does; by default
    /// true.
    virtual bool isSystemWidget() const;
    /// Reads the file again on the user's request. The base class does nothing.
    virtual void reloadFile();
    /// @return whether `reloadFile` does anything; by default false.
    virtual bool canReloadFile() const;
    /// @return whether the frame's own context menu opens; by default true.
    virtual bool requireDefaultMenu() const;
    /// Called when the window was docked or begins to float. The base class does nothing.
    virtual void windowChanged();

Q_SIGNALS:
    /// The modified mark of a document has changed.
    /// @param modified the mark as it is now
    void modifiedChanged(bool modified);
    /// The long or the short title has changed.
    void titlesChanged();
    /// Another program has changed the file or removed it.
    /// @param exists false if it was removed
    void fileChangedOutside(bool exists);
    /// The user wants unsaved changes to be saved before the window closes; if it is still modified
    /// when this returns, it stays open. The question offers to save only where this signal is
    /// connected.
    void saveRequested();
    /// Files were dropped on the window.
    /// @param filenames their paths
    void filesDropped(const QStringList& filenames);
    /// `enableFileWatcher` was called.
    /// @param enabled its argument
    void fileWatcherEnabled(bool enabled);
    /// `fileWatcherIgnoreChanges` was called.
    /// @param ignores its argument
    void fileWatcherIgnores(bool ignores);

protected:
    /// Opens a menu with the operations on the window, unless `requireDefaultMenu` returns false.
    /// @param event has the place of the menu
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Accepts files where `filesDropped` is connected.
    /// @param event accepted for local files
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// Emits `filesDropped` with the local files of the drop.
    /// @param event has the files
    void dropEvent(QDropEvent* event) override;

    using QWidget::closeEvent;
    /// Lets the window close, or, where there are unsaved changes, lets the user decide in a box.
    /// When the window closes, `onClosing` and `callOnCloseScript` are called and the watcher ends.
    /// @param event ignored if the window stays open
    /// @param details shown below the question
    /// @param question shown first
    virtual void closeEvent(QCloseEvent* event, const QString& details, const QString& question);
    /// Called when the window closes, to run a script. The base class does nothing.
    virtual void callOnCloseScript();
    /// Called when the window closes. The base class does nothing.
    virtual void onClosing();

public:
    /// Called when the frame has moved the window. The base class does nothing.
    /// @param area where the window is now
    virtual void notifyLocationChanged(Qt::DockWidgetArea area);

private:
    class Impl;

    bool mayClose(const QString& details, const QString& question);

    std::unique_ptr<Impl> m_implementation;
};
