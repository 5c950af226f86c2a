#pragma once

namespace zvutil::libzvutil {

/// How far a request is.
/// @since 0.1 @ingroup background
enum request_status : int {
    request_pending = 0, ///< not started
    request_started = 1, ///< `started` was emitted; the work is under way
    request_completed = 2, ///< `completed` was emitted
    request_failed = 3 ///< `failed` was emitted
};

} // namespace zvutil::libzvutil
