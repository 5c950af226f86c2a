#pragma once

#include <QMenu>

class QMainWindow;

namespace workbench {

/// The menu "Help": the shortcuts that work at the moment, and what the program consists of.
class HelpMenu : public QMenu
{
    Q_OBJECT

public:
    explicit HelpMenu(QMainWindow& window);

private:
    void showShortcuts();
    void showAbout();

    QMainWindow& m_window;
};

} // namespace workbench
