#include "common/path_names.h"

#include <QDir>
#include <QFileInfo>

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

QString canonicalName(const QString& file)
{
    const QString path = QFileInfo(file).canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(file) : path;
}

} // namespace workbench
