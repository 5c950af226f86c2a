#pragma once

#include <QObject>
#include <QTimer>

class DockFrame;
class DockableWidget;
class QPoint;
class QTabBar;

/// The tabs of a frame's windows: each has a button that closes it and the menu of its window, and so
/// takes the place of the window's title bar.
class DockTabs : public QObject
{
    Q_OBJECT

public:
    /// For \p frame, which owns the object.
    explicit DockTabs(DockFrame& frame);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QObject* child);
    void setUp(QTabBar& bar);
    DockableWidget* windowOf(const QTabBar& bar, int tab) const;
    bool showToolTip(const QTabBar& bar, const QPoint& position, const QPoint& screenPosition);
    bool hasTab(DockableWidget& window) const;
    void update();

    DockFrame& m_frame;
    QTimer m_update;
};
