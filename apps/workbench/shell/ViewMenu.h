#pragma once

#include <zvworkbench/Failure.h>

#include <QList>
#include <QMenu>

#include <functional>
#include <memory>

class DockableWidget;
class QActionGroup;

namespace workbench {

/// The menu "View": the panels, the styles with their accent, the library's commands, the options.
class ViewMenu : public QMenu
{
    Q_OBJECT

public:
    /// Creates the menu. \p panels are those that can be shown and hidden.
    ViewMenu(const QList<DockableWidget*>& panels, QWidget* parent);
    ~ViewMenu() override;

Q_SIGNALS:
    void optionsRequested();
    /// Emitted when something that the user asked for has failed.
    void failed(const workbench::Failure& failure);

private:
    void fillStyles();
    void addAccents();
    void addCommands();
    void call(const char* command);
    void keep(const std::function<void()>& choice);

    QMenu* m_styles;
    std::unique_ptr<QActionGroup> m_styleChoice;
};

} // namespace workbench
