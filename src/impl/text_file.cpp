#include "impl/text_file.h"

#include <QByteArray>
#include <QFile>

namespace libzvutil::impl {

QString read_text_file(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace libzvutil::impl
