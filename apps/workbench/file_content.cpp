#include "file_content.h"

#include "Document.h"

#include <QFile>

namespace workbench {

QByteArray contentOf(const zvutil::ZvFilePath& path)
{
    QFile file(qtFileName(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace workbench
