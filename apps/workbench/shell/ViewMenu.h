#pragma once

#include <QMenu>

#include <functional>
#include <memory>

class QActionGroup;

namespace workbench {

class Workbench;

/// The menu "View": the panels, the styles with their accent, the library's commands, the options.
class ViewMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ViewMenu(Workbench& workbench);
    ~ViewMenu() override;

private:
    void fillStyles();
    void addAccents();
    void addCommands();
    void call(const char* command);
    void keep(const std::function<void()>& choice);

    Workbench& m_workbench;
    QMenu* m_styles;
    std::unique_ptr<QActionGroup> m_styleChoice;
};

} // namespace workbench
