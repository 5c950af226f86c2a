#pragma once

#include <QMenu>

namespace workbench {

class Workbench;

/// The menu "Window": the documents that are open.
class WindowMenu : public QMenu
{
    Q_OBJECT

public:
    explicit WindowMenu(Workbench& workbench);

private:
    void fill();
    void activateNeighbour(int step);

    Workbench& m_workbench;
    QAction* m_next;
    QAction* m_previous;
};

} // namespace workbench
