#include "common/file_content.h"

#include "common/path_names.h"

#include <QFile>

namespace workbench {

QByteArray contentOf(const zvutil::ZvFilePath& path)
{
    QFile file(qtFileName(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace workbench
