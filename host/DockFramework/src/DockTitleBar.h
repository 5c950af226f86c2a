#pragma once

#include <QString>
#include <QWidget>

class ElidedLabel;
class QAction;

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

Q_SIGNALS:
    void aboutToShowMenu();
    void closeRequested();
    void floatRequested();
    void reloadRequested();

private:
    ElidedLabel* m_label;
    QAction* m_floatAction;
    QAction* m_reloadAction;
};
