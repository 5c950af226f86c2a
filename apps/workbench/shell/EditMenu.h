#pragma once

#include <QMenu>

namespace workbench {

class Workbench;

/// The menu "Edit": what can be done with the current document, and the search in files.
class EditMenu : public QMenu
{
    Q_OBJECT

public:
    explicit EditMenu(Workbench& workbench);

private:
    void fill();

    Workbench& m_workbench;
    QAction* m_find;
};

} // namespace workbench
