#pragma once

namespace workbench {

/// The orders in which files are shown.
enum class FilesOrder {
    Name, ///< by names, with numbers in them by their values; files of one name by their folders
    Folder, ///< by folders, then by names
    Date, ///< the last changed first
    Found ///< as the folders are walked
};

} // namespace workbench
