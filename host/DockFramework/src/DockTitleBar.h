#pragma once

#include <QString>
#include <QWidget>

class ElidedLabel;
class QAction;
class QMenu;

/// The title bar of a window of the frame. Its parts have the object names that style sheets use.
class DockTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit DockTitleBar(QWidget* parent);

    void setTitles(const QString& title, const QString& toolTip);
    void setHighlighted(bool highlighted);
    /// \p canReload shows the menu's entry for reloading.
    void setState(bool floating, bool canReload);

    /// Takes no room while the window has a tab that says the same.
    void setCollapsed(bool collapsed);

    void showMenu(const QPoint& screenPosition);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void aboutToShowMenu();
    void closeRequested();
    void floatRequested();
    void reloadRequested();

private:
    ElidedLabel* m_label;
    QMenu* m_menu;
    QAction* m_floatAction;
    QAction* m_reloadAction;
    bool m_isCollapsed = false;
};
