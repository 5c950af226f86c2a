#include "common/window_sheet.h"

#include "common/readable_colour.h"
#include "common/style_options.h"

#include <zvutil/ZvStyle.h>

#include <QColor>

namespace workbench {

QString windowSheet()
{
    using libzvutil::ZvStyleBrush;
    const QColor panel = styleColour(ZvStyleBrush::Panel);
    const QColor page = styleColour(ZvStyleBrush::EditorEnabled);
    const QColor text = styleColour(ZvStyleBrush::TextEnabled);
    const QColor accent = styleColour(ZvStyleBrush::Accent);
    const QString closeIcon =
        libzvutil::ZvStyle::Current().icon(libzvutil::ZvStyleIcon::Close).path().toQString();
    return QStringLiteral(
               "DockFrame > QTabBar::tab, QDockWidgetGroupWindow > QTabBar::tab {"
               " background: %1; color: %2; border: none; border-top: 2px solid transparent;"
               " min-width: 0; padding: 6px 10px; }"
               "DockFrame > QTabBar::tab:selected, QDockWidgetGroupWindow > QTabBar::tab:selected {"
               " background: %3; color: %4; border-top-color: %5; }"
               "DockFrame > QTabBar::tab:hover:!selected {"
               " background: %6; }"
               "DockFrame > QTabBar::close-button, QDockWidgetGroupWindow > QTabBar::close-button {"
               " image: url(\"%7\"); width: 12px; height: 12px; margin-left: 4px; }"
               "#dockWidgetTitleBar > #TitleBarLabel[highlight=true] { color: %8; }"
               "QStatusBar QToolButton { border: none; padding: 4px 10px; }")
        .arg(panel.name(), readable(text, panel).name(), page.name(), readable(text, page).name(),
             accent.name(), page.name(), closeIcon,
             readable(accent, styleColour(ZvStyleBrush::InteractiveEnabled)).name());
}

} // namespace workbench
