#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdlib>

namespace zvfuzz {

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

inline void write(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

inline QByteArray content(const QString& name)
{
    QFile file(name);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace zvfuzz
