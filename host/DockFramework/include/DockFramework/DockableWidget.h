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
/// @since 0.1 @ingroup host
class DOCKFRAMEWORK_EXPORT DockableWidget : public QDockWidget
{
    Q_OBJECT

public:
    /// A window of a frame.
    /// @param contents owned from now on; must not be null
    /// @param parent the frame
    DockableWidget(DockableWidgetContents* contents, QWidget* parent);
    /// Deletes the contents unless they were deleted before.
    ~DockableWidget() override;

    /// @return the contents; null once they were deleted.
    DockableWidgetContents* contents() const;

    /// @return whether the title bar shows that the user works in this window.
    bool isHighlighted() const;
    /// Sets the highlight, and calls the contents if that is a change.
    /// @param highlighted whether the user works in this window
    void setHighlighted(bool highlighted);

protected:
    /// Closes the contents first; ignores the event if they refuse.
    /// @param event accepted if the contents close
    void closeEvent(QCloseEvent* event) override;
    /// Reports a press of the mouse on the title bar to the contents.
    /// @param watched the title bar
    /// @param event an event of the title bar, which it gets in any case
    /// @return what `QDockWidget::eventFilter` returns
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
