#pragma once

#include <zvutil/ZvStyle.h>

#include <QColor>
#include <QString>
#include <QStringList>

namespace zvtest {

inline const QStringList builtIn = {"Light", "Dark"};

/// A style whose panels have this colour, and which says nothing else.
inline libzvutil::ZvStyle styleWithPanel(const char* name, const QColor& panel)
{
    libzvutil::ZvStyle style(name);
    style.setColour(libzvutil::ZvStyleBrush::Panel, panel);
    return style;
}

/// How a sheet says that something has this background.
inline QString inSheet(const QColor& colour)
{
    return QString("background-color:%1;").arg(colour.name(QColor::HexArgb));
}

} // namespace zvtest
