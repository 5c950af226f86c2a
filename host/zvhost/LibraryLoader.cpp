#include "LibraryLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

namespace {

/// The library as it lies in an install tree, in a build tree and, on Windows, beside the program.
QStringList candidates()
{
    const QDir here(QCoreApplication::applicationDirPath());
    const QStringList directories = {
        here.absoluteFilePath(QStringLiteral(ZVHOST_LIBRARY_DIRECTORY)),
        here.absoluteFilePath(QStringLiteral("../lib")),
        here.absolutePath(),
    };
#if defined(Q_OS_WIN)
    const QString name = QStringLiteral("libzvutil.dll");
#elif defined(Q_OS_MACOS)
    const QString name = QStringLiteral("libzvutil.dylib");
#else
    const QString name = QStringLiteral("libzvutil.so");
#endif
    QStringList files;
    for (const QString& directory : directories)
        files += QDir::cleanPath(directory + QLatin1Char('/') + name);
    return files;
}

} // namespace

QString loadLibrary(const QString& file)
{
    if (!file.isEmpty())
        return loadModule(file);
    for (const QString& candidate : candidates()) {
        if (QFileInfo::exists(candidate))
            return loadModule(candidate);
    }
    return QStringLiteral("Cannot find libzvutil; tried ")
        + candidates().join(QStringLiteral(", "));
}

QString loadModule(const QString& file)
{
    QLibrary library(QFileInfo(file).absoluteFilePath());
    return library.load() ? QString() : library.errorString();
}
