#pragma once

namespace zvutil::impl {

/// Handles all events that wait for the current thread, for work that goes on behind it.
///
/// GLib's event loop, entered from an event, passes over posted events that it has seen before; here
/// they are handled as everywhere else.
void handle_events();

} // namespace zvutil::impl
