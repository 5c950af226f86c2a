#pragma once

#include <DockFramework/DockFramework_export.h>

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QSize>

class DockableWidget;
class DockableWidgetContents;

/// A main window that consists of docks: documents in tabs, panels at their sides.
class DOCKFRAMEWORK_EXPORT DockFrame : public QMainWindow
{
    Q_OBJECT

public:
    /// A frame without windows; \p parent, which may be null, owns it.
    explicit DockFrame(QWidget* parent = nullptr);
    /// Deletes the windows with their contents.
    ~DockFrame() override;

    /// Shows \p contents in a window at their preferred place, panels in a quarter of the frame or
    /// the size that they would have as a floating window, until the user resizes them. The frame
    /// owns the window that is returned and \p contents, which must not be null.
    DockableWidget* addContents(DockableWidgetContents* contents);

    /// The windows in the order in which they were added; the frame owns them.
    QList<DockableWidget*> dockableWidgets() const;

    /// The window that the user works in, or null.
    DockableWidget* highlighted() const;

    /// Brings \p window to the front and highlights it.
    void activate(DockableWidget* window);

    /// The places of all windows, by their object names, and the sizes of the panels.
    QByteArray saveLayout() const;
    /// Restores what `saveLayout` returned. Returns false for any other bytes.
    bool restoreLayout(const QByteArray& layout);

    /// Closes all documents, those with changes first, so that all stay open if the user cancels at
    /// once. Stops at the first that refuses and returns false.
    bool closeDocuments();

Q_SIGNALS:
    /// The user works in \p window from now on; null for none.
    void highlightedChanged(DockableWidget* window);

protected:
    /// Shares the room between documents and panels when first shown.
    void showEvent(QShowEvent* event) override;
    /// Notes the sizes of panels as they change.
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
