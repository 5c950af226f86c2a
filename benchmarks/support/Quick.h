#pragma once

namespace zvbench {

/// Whether each case is only to show that it works, so that small data will do. Known when the first
/// case runs.
bool isQuick();

} // namespace zvbench
