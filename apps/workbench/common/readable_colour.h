#pragma once

#include <QColor>

namespace workbench {

/// The least contrast between a text and what is behind it that people with weak sight can read, as the
/// guidelines for accessible content of the web count it: from 1, none, to 21, black on white.
constexpr double leastContrast = 4.5;

/// Returns the contrast between two opaque colours.
double contrast(const QColor& first, const QColor& second);

/// Returns \p text as it is if it can be read on \p background, which is opaque. Otherwise returns the colour
/// nearest to it, on the way to black or white, that can.
QColor readable(const QColor& text, const QColor& background);

} // namespace workbench
