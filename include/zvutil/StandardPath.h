#pragma once

namespace zvutil {

/// The host's standard directories; `ZvFilePath::Path` asks where they are.
/// @since 0.1 @ingroup paths
enum class StandardPath {
    AppData = 0, ///< the user's data of the application
    Documents = 1, ///< the user's documents
    CommonAppData = 2 ///< the application's data that all users share
};

} // namespace zvutil
