#include "shell/PanelButton.h"

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>
#include <DockFramework/DockableWidgetContents.h>

namespace workbench {

PanelButton::PanelButton(DockFrame& frame, DockableWidget& panel)
    : m_frame(frame)
    , m_panel(panel)
{
    const QString name = panel.contents()->shortTitle();
    setObjectName(QStringLiteral("show:") + panel.contents()->objectName());
    setText(name);
    setToolTip(tr("Show or hide “%1”").arg(name));
    setCheckable(true);
    setAutoRaise(true);
    // A panel behind another tab counts as hidden here, unlike for its entry in the menu.
    connect(&panel, &QDockWidget::visibilityChanged, this, [this](bool visible) {
        m_isInFront = visible;
        setChecked(visible);
    });
    connect(this, &QToolButton::clicked, this, &PanelButton::showOrClose);
}

void PanelButton::showOrClose()
{
    if (m_isInFront)
        m_panel.close();
    else
        m_frame.activate(&m_panel);
    setChecked(m_isInFront);
}

} // namespace workbench
