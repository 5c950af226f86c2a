#pragma once

#include <DockFramework/DockFramework_export.h>

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QSize>

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
    /// or what they would have as a window of their own, until the user gives them another size. The
    /// frame owns both.
    DockableWidget* addContents(DockableWidgetContents* contents);

    /// In the order in which they were added.
    QList<DockableWidget*> dockableWidgets() const;

    /// The window that the user works in, or nullptr.
    DockableWidget* highlighted() const;

    /// Brings \p window to the front and has the user work in it.
    void activate(DockableWidget* window);

    /// Where all windows are, by their object names, and how large the panels are.
    QByteArray saveLayout() const;
    /// The same back. Returns false if that isn't what `saveLayout` has returned.
    bool restoreLayout(const QByteArray& layout);

    /// Closes all documents, those with changes first, so that all stay open if the user takes it
    /// back at once. Stops at the first that refuses: then the result is false.
    bool closeDocuments();

Q_SIGNALS:
    /// \p window may be nullptr.
    void highlightedChanged(DockableWidget* window);

protected:
    void showEvent(QShowEvent* event) override;
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
