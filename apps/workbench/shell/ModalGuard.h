#pragma once

#include <QObject>

class QWidget;

namespace workbench {

/// Keeps the shortcuts of a window from working while a modal box is open in front of it.
///
/// Qt looks for shortcuts before it looks whether the window that has the keyboard is blocked, and a
/// blocked window has it wherever the desktop gives it to the window that was clicked: each press of a
/// key would open one more box.
class ModalGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards \p window, which owns the guard.
    explicit ModalGuard(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
};

} // namespace workbench
