#include "common/readable_colour.h"

#include <cmath>

namespace workbench {

namespace {

/// Returns what the eye sees of one part of a colour, linear in light.
double linear(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

/// Returns the colour \p share of the way from \p from to \p to, as a screen shows it.
QColor between(const QColor& from, const QColor& to, double share)
{
    const auto part = [share](double first, double last) { return first + share * (last - first); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()))
        .rgb();
}

} // namespace

double contrast(const QColor& first, const QColor& second)
{
    constexpr double glare = 0.05;
    const double a = luminance(first) + glare;
    const double b = luminance(second) + glare;
    return a > b ? a / b : b / a;
}

QColor readable(const QColor& text, const QColor& background)
{
    constexpr int steps = 50;
    const QColor painted = between(background, text, text.alphaF());
    const QColor end = contrast(Qt::black, background) > contrast(Qt::white, background)
        ? QColor(Qt::black)
        : QColor(Qt::white);
    for (int step = 0; step < steps; ++step) {
        const QColor colour = between(painted, end, double(step) / steps);
        if (contrast(colour, background) >= leastContrast)
            return colour;
    }
    return end;
}

} // namespace workbench
