#pragma once

#include <zvutil/ZvStyleManager.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QString>
#include <QTest>

namespace zvtest {

inline QByteArray bytesOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be read");
}

inline bool writeTo(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Files that have been read as XML are closed by the event loop.
inline void closeFiles()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// One row for each built-in style, of which the column "style" has the name.
inline void addStyleRows()
{
    QTest::addColumn<QString>("style");
    for (const char* const name : {"Light", "Dark"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

/// Puts a style on the application.
inline void showStyle(const QString& name)
{
    using libzvutil::ZvStyleManager;
    ZvStyleManager::SetStyle(ZvStyleManager::Style(name));
    ZvStyleManager::Refresh();
}

} // namespace zvtest
