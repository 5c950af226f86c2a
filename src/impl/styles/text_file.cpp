#include "impl/styles/text_file.h"

#include "base/file_safety.h"
#include "impl/xml/save_device.h"

#include <QByteArray>
#include <QFile>
#include <QSaveFile>
#include <QTextStream>

#include <memory>

namespace libzvutil::impl {

QString read_text_file(const QString& file_name)
{
    QFile file(file_name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool write_text_file(const QString& file_name, const QString& text)
{
    const auto file = std::make_shared<QSaveFile>(file_name);
    // Allow writing in place: in a folder where no file can be created, an existing one may be
    // writable.
    file->setDirectWriteFallback(true);
    if (!zvutil::base::open_safely(*file))
        return false;
    zvutil::impl::save_device device(file);
    QTextStream(&device) << text;
    return file->commit();
}

} // namespace libzvutil::impl
