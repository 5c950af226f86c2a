#pragma once

namespace zvutil::impl {

/// Makes the next handling of events see all events that wait for the current thread. A loop that
/// handles events calls this once, before its first round.
///
/// GLib's event loop, when entered from an event, skips posted events that it has seen before,
/// unless it is woken up; later posted events it sees by itself. Waking it up costs a system call.
void notice_waiting_events();

/// Handles, once, the events that wait for the current thread; the caller's work continues
/// afterwards. Events that are posted meanwhile wait for the next call.
///
/// Callers don't call sendPostedEvents() before: that would be a second round, in which an object
/// that the first one schedules for deletion is deleted while its caller still uses it.
void handle_events();

} // namespace zvutil::impl
