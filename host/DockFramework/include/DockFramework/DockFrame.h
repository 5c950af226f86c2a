#pragma once

#include <DockFramework/DockFramework_export.h>

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QSize>

class DockableWidget;
class DockableWidgetContents;

/// A main window that consists of docks: documents in tabs, panels at their sides.
/// @since 0.1 @ingroup host
class DOCKFRAMEWORK_EXPORT DockFrame : public QMainWindow
{
    Q_OBJECT

public:
    /// A frame without windows.
    /// @param parent owns the frame; may be null
    explicit DockFrame(QWidget* parent = nullptr);
    /// Deletes the windows with their contents.
    ~DockFrame() override;

    /// Shows \p contents in a window at their preferred place, panels in a quarter of the frame or
    /// the size that they would have as a floating window, until the user resizes them.
    /// @param contents owned by the frame from now on; must not be null
    /// @return the window, which the frame owns
    DockableWidget* addContents(DockableWidgetContents* contents);

    /// @return the windows in the order in which they were added; the frame owns them.
    QList<DockableWidget*> dockableWidgets() const;

    /// @return the window that the user works in, or null.
    DockableWidget* highlighted() const;

    /// Brings \p window to the front and highlights it.
    /// @param window one of the frame's own; must not be null
    void activate(DockableWidget* window);

    /// @return the places of all windows, by their object names, and the sizes of the panels.
    QByteArray saveLayout() const;
    /// Restores the places and sizes of windows.
    /// @param layout what `saveLayout` returned
    /// @return false for any other bytes
    bool restoreLayout(const QByteArray& layout);

    /// Closes all documents, those with changes first, so that all stay open if the user cancels at
    /// once. Stops at the first that refuses.
    /// @return whether none has refused
    bool closeDocuments();

Q_SIGNALS:
    /// The user works in another window from now on.
    /// @param window that window; null for none
    void highlightedChanged(DockableWidget* window);

protected:
    /// Shares the room between documents and panels when first shown.
    /// @param event passed on to the base class
    void showEvent(QShowEvent* event) override;
    /// Notes the sizes of panels as they change.
    /// @param watched one of the frame's windows
    /// @param event an event of that window, which it gets in any case
    /// @return what `QMainWindow::eventFilter` returns
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void dock(DockableWidget& window);
    bool showsDocuments() const;
    void leaveRoomForDocuments();
    void highlight(DockableWidget* window);
    void followFocus(const QWidget* focused);

    QList<DockableWidget*> m_windows; // children; Qt changes the order of those
    DockableWidget* m_highlighted = nullptr;
    QHash<const QObject*, QSize> m_panelSizes; // as they were beside the last document
    bool m_isRoomShared = false;
};
