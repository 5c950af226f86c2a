#pragma once

#include <QString>

namespace workbench {

/// Makes a folder, with those above it, that only its user can look into. Returns false if that fails.
bool makePrivateFolder(const QString& folder);

/// Lets nobody but its user read \p file. Returns false if that fails. On Windows the folder, which lies in the
/// user's profile, decides on that.
bool makePrivate(const QString& file);

/// Makes an empty private file, unless there is a file already, which becomes private. What replaces it keeps
/// that. Returns false if that fails.
bool makePrivateFile(const QString& file);

} // namespace workbench
