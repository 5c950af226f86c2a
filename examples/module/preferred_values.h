#pragma once

#include <string>
#include <vector>

/// Returns the values between 1 and 10 of a series of preferred values: "E6", "E12" or "E24". Empty for
/// any other name.
std::vector<double> preferredValues(const std::string& series);

/// Returns the value of \p values, times a power of ten, that is nearest to \p value by ratio. \p value
/// must be positive and finite, \p values not empty.
double nearestValue(double value, const std::vector<double>& values);
