#pragma once

namespace zvutil::impl {

/// Has the next handling of events see all that waits for the current thread. A loop that handles
/// events calls it once, before its first round.
///
/// GLib's event loop, entered from an event, passes over posted events that it has seen before, unless
/// it is woken up; what is posted later it sees by itself. Waking it up takes a call of the system.
void notice_waiting_events();

/// Handles, once, the events that wait for the current thread, for work that goes on after it. Events
/// that are posted meanwhile are left for the next time.
///
/// Nobody sends posted events here first: that would be a second round, in which an object that the
/// first one schedules for deletion is deleted while its caller still uses it.
void handle_events();

} // namespace zvutil::impl
