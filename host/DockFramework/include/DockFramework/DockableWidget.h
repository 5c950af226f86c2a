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
/// Closing it closes the contents, which may refuse. It is deleted along with them.
class DOCKFRAMEWORK_EXPORT DockableWidget : public QDockWidget
{
    Q_OBJECT

public:
    /// Takes \p contents over.
    DockableWidget(DockableWidgetContents* contents, QWidget* parent);
    ~DockableWidget() override;

    /// Null from when the contents are gone until the window goes.
    DockableWidgetContents* contents() const;

    /// Whether the title bar shows that the user works in this window.
    bool isHighlighted() const;
    /// Tells the contents of the change, if it is one.
    void setHighlighted(bool highlighted);

protected:
    void closeEvent(QCloseEvent* event) override;
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
