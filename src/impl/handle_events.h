#pragma once

namespace zvutil::impl {

/// Handles, once, the events that wait for the current thread, for work that goes on after it. Events
/// that are posted meanwhile are left for the next time.
///
/// GLib's event loop, entered from an event, passes over posted events that it has seen before, unless
/// it is woken up. To send them here first, and then handle events, would handle two rounds: an object
/// that the first round schedules for deletion would be deleted by the second, while its caller still
/// uses it.
void handle_events();

} // namespace zvutil::impl
