#pragma once

#include <QColor>
#include <QString>

#include <vector>

namespace workbench {

/// A colour that is offered as the accent.
struct Accent
{
    QString name;
    QColor colour;
};

/// Those of the built-in style library, in its order. Read once; valid for good.
const std::vector<Accent>& accents();

/// The text that stands for a colour in options: "#rrggbb".
QString accentText(const QColor& colour);

} // namespace workbench
