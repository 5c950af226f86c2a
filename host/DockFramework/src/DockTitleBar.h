#pragma once

#include <QString>
#include <QWidget>

class ElidedLabel;
class QAction;

/// The title bar of a window of the frame. Its parts have the names that style sheets know.
class DockTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit DockTitleBar(QWidget* parent);

    void setTitles(const QString& title, const QString& toolTip);
    void setHighlighted(bool highlighted);
    /// \p canReload decides whether the menu offers it.
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
