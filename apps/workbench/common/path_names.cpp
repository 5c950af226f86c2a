#include "common/path_names.h"

#include <filesystem>
#include <string>

namespace workbench {

QString qtFileName(const zvutil::ZvFilePath& path)
{
    return QString::fromStdString(path.toStdFilePath().u8string());
}

zvutil::ZvFilePath filePath(const QString& qtFileName)
{
    return zvutil::ZvFilePath(qtFileName.toStdWString());
}

} // namespace workbench
