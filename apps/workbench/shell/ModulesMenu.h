#pragma once

#include <QMenu>

namespace workbench {

class WorkbenchWindow;

/// The menu "Modules": the entries that modules have added.
class ModulesMenu : public QMenu
{
    Q_OBJECT

public:
    /// Creates the menu with all entries, for \p window, which has to outlive it.
    ModulesMenu(WorkbenchWindow& window, QWidget* parent);
};

} // namespace workbench
