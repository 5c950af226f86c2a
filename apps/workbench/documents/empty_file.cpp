#include "documents/empty_file.h"

#include "common/path_names.h"

#include <zvworkbench/FileError.h>

#include <QFile>

namespace workbench {

bool isEmptyFile(const zvutil::ZvFilePath& file)
{
    QFile source(qtFileName(file));
    char first = 0;
    if (!source.open(QIODevice::ReadOnly))
        throw FileError(source.errorString());
    return source.read(&first, 1) == 0;
}

} // namespace workbench
