#pragma once

namespace zvutil::details {

/// The numbers by which the host's log knows its levels.
enum log_level : int {
    log_trace = 0,
    log_progress = 1, ///< of background work
    log_information = 2,
    log_warning = 3,
    log_error = 4,
    log_critical = 5
};

} // namespace zvutil::details
