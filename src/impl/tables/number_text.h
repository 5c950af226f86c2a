#pragma once

#include <QVariant>

#include <cstddef>

namespace zvutil::impl {

/// The room that `write_number` needs, in bytes.
constexpr std::size_t max_number_text = 32;

/// Writes what `QVariant::toString` returns for an integer or a `double`, which is ASCII, without making a
/// `QString`. Returns the end of the text, or null for a value of another type, for which nothing is written.
char* write_number(char* target, const QVariant& value);

} // namespace zvutil::impl
