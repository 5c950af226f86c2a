#pragma once

namespace zvutil::impl {

/// Registers `std::string` with Qt, which otherwise drops queued calls with one. Any thread; may be
/// called repeatedly.
void register_string_metatype();

} // namespace zvutil::impl
