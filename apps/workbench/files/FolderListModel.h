#pragma once

#include <zvutil/ZvMultiDirectoryListModel.h>

namespace workbench {

/// The library's list of files, whose folders are set all at once, so that it scans them once.
class FolderListModel : public ZvMultiDirectoryListModel
{
    Q_OBJECT

public:
    using ZvMultiDirectoryListModel::setDirectories;
    using ZvMultiDirectoryListModel::ZvMultiDirectoryListModel;
};

} // namespace workbench
