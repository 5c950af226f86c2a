#pragma once

namespace zvutil::impl {

/// Makes `std::string` known to Qt, without which it drops queued calls that carry one. Any thread,
/// and as often as one likes.
void register_string_metatype();

} // namespace zvutil::impl
