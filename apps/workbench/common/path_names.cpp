#include "common/path_names.h"

#include <QDir>

#include <filesystem>
#include <string>

namespace workbench {

QString qtFileName(const zvutil::ZvFilePath& path)
{
    return QString::fromStdString(path.toStdFilePath().u8string());
}

zvutil::ZvFilePath filePath(const QString& qtFileName)
{
    return zvutil::ZvFilePath(QDir::toNativeSeparators(qtFileName).toStdWString());
}

} // namespace workbench
