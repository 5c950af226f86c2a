#include "load_library.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

namespace {

/// Returns the folders where libraries may be: in an install tree, in a build tree and, on Windows,
/// beside the program.
QStringList libraryFolders()
{
    const QDir here(QCoreApplication::applicationDirPath());
    QStringList folders = {
        here.absoluteFilePath(QStringLiteral(ZVHOST_LIBRARY_DIRECTORY)),
        here.absoluteFilePath(QStringLiteral("../lib")),
        here.absolutePath(),
    };
    for (QString& folder : folders)
        folder = QDir::cleanPath(folder);
    folders.removeDuplicates();
    return folders;
}

/// Returns the paths where \p name, which may have folders, may be.
QStringList candidates(const QString& name)
{
    QStringList files = libraryFolders();
    for (QString& file : files)
        file = QDir::cleanPath(file + QLatin1Char('/') + name);
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
    return loadFirst(QStringLiteral("libzvutil"), candidates(QStringLiteral(ZVHOST_LIBRARY_FILE)));
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
    return loadFirst(name, candidates(QStringLiteral(ZVHOST_MODULE_FOLDER "/") + name + suffix));
}

QStringList moduleFolders(const QStringList& given)
{
    const QString listed = qEnvironmentVariable("ZVHOST_MODULES");
    QStringList folders = candidates(QStringLiteral(ZVHOST_MODULE_FOLDER "/modules"));
    folders += listed.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    folders += given;
    return folders;
}

QStringList loadModulesIn(const QString& folder)
{
    QStringList errors;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        if (!QLibrary::isLibrary(file.fileName()))
            continue;
        const QString error = loadModule(file.filePath());
        if (!error.isEmpty())
            errors.append(error);
    }
    return errors;
}
