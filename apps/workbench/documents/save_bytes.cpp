#include "documents/save_bytes.h"

#include "common/path_names.h"
#include "documents/file_in_use.h"

#include <zvworkbench/FileError.h>

#include <HostSupport/saving.h>

#include <QCoreApplication>

#include <stdexcept>

namespace workbench {

void saveBytes(const zvutil::ZvFilePath& file, const QByteArray& bytes)
{
    try {
        host::saveFile(qtFileName(file).toStdString(), bytes.toStdString());
    } catch (const std::runtime_error& error) {
        throw FileError(isInUse(file) ? QCoreApplication::translate(
                            "workbench::SaveBytes", "The file is open in another program.")
                                      : QString::fromUtf8(error.what()));
    }
}

} // namespace workbench
