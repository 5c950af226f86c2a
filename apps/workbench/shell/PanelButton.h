#pragma once

#include <QToolButton>

class DockFrame;
class DockableWidget;

namespace workbench {

/// A button on the status bar that brings a panel to the front, or closes it if it is there already. It
/// is pressed while the panel can be seen.
class PanelButton : public QToolButton
{
    Q_OBJECT

public:
    /// A button for \p panel of \p frame. Its parent is the status bar that it is added to.
    PanelButton(DockFrame& frame, DockableWidget& panel);

private:
    void showOrClose();

    DockFrame& m_frame;
    DockableWidget& m_panel;
    bool m_isInFront = false;
};

} // namespace workbench
