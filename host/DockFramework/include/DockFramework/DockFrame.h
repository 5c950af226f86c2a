#pragma once

#include <DockFramework/DockFramework_export.h>

#include <QList>
#include <QMainWindow>

class DockableWidget;
class DockableWidgetContents;

/// A main window that is all docks: documents in tabs, panels at their sides.
class DOCKFRAMEWORK_EXPORT DockFrame : public QMainWindow
{
    Q_OBJECT

public:
    explicit DockFrame(QWidget* parent = nullptr);
    ~DockFrame() override;

    /// Shows \p contents in a window where they prefer to stand, panels in a quarter of the frame
    /// or what they would have as a window of their own. The frame owns both.
    DockableWidget* addContents(DockableWidgetContents* contents);

    /// In the order in which they were added.
    QList<DockableWidget*> dockableWidgets() const;

    /// The window that the user works in, or nullptr.
    DockableWidget* highlighted() const;

    /// Brings \p window to the front and has the user work in it.
    void activate(DockableWidget* window);

    /// Closes all documents, those with changes first, so that all stay open if the user takes it
    /// back at once. Stops at the first that refuses: then the result is false.
    bool closeDocuments();

Q_SIGNALS:
    /// \p window may be nullptr.
    void highlightedChanged(DockableWidget* window);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void place(DockableWidget& window);
    int documents() const;
    void leaveRoomForDocuments();
    void highlight(DockableWidget* window);
    void followFocus(const QWidget* focused);

    QList<DockableWidget*> m_windows; // children; Qt changes the order of those
    DockableWidget* m_highlighted = nullptr;
    bool m_hasBeenShown = false;
};
