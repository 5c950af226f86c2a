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

/// Returns the accents of the built-in style library, in its order. The first call reads them; the
/// reference stays valid.
const std::vector<Accent>& accents();

/// Returns the text that stands for a colour in options: "#rrggbb".
QString accentText(const QColor& colour);

} // namespace workbench
