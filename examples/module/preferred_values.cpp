#include "preferred_values.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

std::vector<double> preferredValues(const std::string& series)
{
    const std::vector<double> all = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0,
                                     3.3, 3.6, 3.9, 4.3, 4.7, 5.1, 5.6, 6.2, 6.8, 7.5, 8.2, 9.1};
    const std::size_t step = series == "E24" ? 1 : series == "E12" ? 2 : series == "E6" ? 4 : 0;
    std::vector<double> values;
    for (std::size_t i = 0; step > 0 && i < all.size(); i += step)
        values.push_back(all[i]);
    return values;
}

double nearestValue(double value, const std::vector<double>& values)
{
    const double decade = std::pow(10.0, std::floor(std::log10(value)));
    double best = values.front() * decade * 10;
    for (const double candidate : values) {
        const double resistance = candidate * decade;
        if (std::abs(std::log(resistance / value)) < std::abs(std::log(best / value)))
            best = resistance;
    }
    return best;
}
