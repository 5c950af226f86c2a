#pragma once

#include <DockFramework/DockFramework_export.h>

#include <QDockWidget>

class DockTitleBar;
class DockableWidgetContents;
class QCloseEvent;
class QEvent;
class ReloadBar;

/// A window of the docking frame: the contents inside a border, a title bar, and, when the file has
/// changed on disk, an offer to read it again.
///
/// Closing the window closes the contents, which may refuse. The window is deleted along with them.
class DOCKFRAMEWORK_EXPORT DockableWidget : public QDockWidget
{
    Q_OBJECT

public:
    /// Shows \p contents, which must not be null and are owned from now on; \p parent is the frame.
    DockableWidget(DockableWidgetContents* contents, QWidget* parent);
    /// Deletes the contents unless they were deleted before.
    ~DockableWidget() override;

    /// The contents; null once they were deleted.
    DockableWidgetContents* contents() const;

    /// Whether the title bar shows that the user works in this window.
    bool isHighlighted() const;
    /// Sets the highlight, and calls the contents if that is a change.
    void setHighlighted(bool highlighted);

protected:
    /// Closes the contents first; ignores the event if they refuse.
    void closeEvent(QCloseEvent* event) override;
    /// Reports a press of the mouse on the title bar to the contents.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showTitles();
    void offerToReload(bool exists);
    void applyFloating(bool floating);

    DockableWidgetContents* m_contents;
    DockTitleBar* m_titleBar;
    ReloadBar* m_reloadBar;
    bool m_isHighlighted = false;
    bool m_hasFloated = false;
};
