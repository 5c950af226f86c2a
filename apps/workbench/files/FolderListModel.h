#pragma once

#include <zvutil/ZvMultiDirectoryListModel.h>

namespace workbench {

/// The library's list of files. `setDirectories` takes all folders in one call, so that they are
/// scanned only once.
class FolderListModel : public ZvMultiDirectoryListModel
{
    Q_OBJECT

public:
    using ZvMultiDirectoryListModel::setDirectories;
    using ZvMultiDirectoryListModel::ZvMultiDirectoryListModel;
};

} // namespace workbench
