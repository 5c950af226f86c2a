#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace zvtest {

/// All bytes of the file \p name, or "can't be read".
inline QByteArray contentOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be read");
}

/// Has the file \p name hold just these bytes. \return whether that worked
inline bool writeTo(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace zvtest
