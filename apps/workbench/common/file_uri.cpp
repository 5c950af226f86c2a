#include "common/file_uri.h"

#include <zvutil/ZvURI.h>

#include <QDir>
#include <QUrl>

namespace workbench {

QString fileUri(const QString& file)
{
    const QUrl url = QUrl::fromLocalFile(QDir::fromNativeSeparators(file));
    return QString::fromUtf8(ZvURI(url.toEncoded().constData()).c_str());
}

} // namespace workbench
