#include "load_library.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

namespace {

/// Returns the paths where a library named \p name may be: in an install tree, in a build tree and,
/// on Windows, beside the program.
QStringList candidates(const QString& name)
{
    const QDir here(QCoreApplication::applicationDirPath());
    const QStringList directories = {
        here.absoluteFilePath(QStringLiteral(ZVHOST_LIBRARY_DIRECTORY)),
        here.absoluteFilePath(QStringLiteral("../lib")),
        here.absolutePath(),
    };
    QStringList files;
    for (const QString& directory : directories)
        files += QDir::cleanPath(directory + QLatin1Char('/') + name);
    return files;
}

QString loadFirst(const QString& name, const QStringList& files)
{
    for (const QString& file : files) {
        if (QFileInfo::exists(file))
            return loadModule(file);
    }
    return QStringLiteral("Cannot find %1; tried %2")
        .arg(name, QDir::toNativeSeparators(files.join(QStringLiteral(", "))));
}

} // namespace

QString loadLibrary(const QString& file)
{
    if (!file.isEmpty())
        return loadModule(file);
#if defined(Q_OS_WIN)
    const QString name = QStringLiteral("libzvutil.dll");
#elif defined(Q_OS_MACOS)
    const QString name = QStringLiteral("libzvutil.dylib");
#else
    const QString name = QStringLiteral("libzvutil.so");
#endif
    return loadFirst(QStringLiteral("libzvutil"), candidates(name));
}

QString loadModule(const QString& file)
{
    QLibrary library(QFileInfo(file).absoluteFilePath());
    return library.load() ? QString() : library.errorString();
}

QString loadOwnModule(const QString& name)
{
#if defined(Q_OS_WIN)
    const QString suffix = QStringLiteral(".dll");
#else
    const QString suffix = QStringLiteral(".so");
#endif
    return loadFirst(name, candidates(name + suffix));
}
