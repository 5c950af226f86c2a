#pragma once

#include <QString>

namespace workbench {

/// By what a file is known again without reading it: if another program has written or replaced it, its state
/// is another one.
struct FileState
{
    bool exists = false;
    qint64 size = 0;
    qint64 modified = 0; ///< milliseconds since the beginning of 1970
    quint64 id = 0; ///< its number on its disk, or 0 where there is none

    /// Returns the state of \p file at this moment.
    static FileState of(const QString& file);
};

bool operator==(const FileState& a, const FileState& b);
bool operator!=(const FileState& a, const FileState& b);

} // namespace workbench
