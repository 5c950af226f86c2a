#pragma once

#include <QString>
#include <QStringList>

/// Loads libzvutil: \p file, or if that is empty the library beside this program. The library stays
/// loaded. Returns an empty text, or what went wrong.
QString loadLibrary(const QString& file);

/// Loads a module, a shared library that links against libzvutil. The module stays loaded. Returns
/// an empty text, or what went wrong.
QString loadModule(const QString& file);

/// Loads this program's module \p name. The module stays loaded. Returns an empty text, or what went
/// wrong.
QString loadOwnModule(const QString& name);

/// Returns the folders of users' modules, in the order in which they are loaded: those beside this
/// program's own modules, those of the environment variable ZVHOST_MODULES, and \p given.
QStringList moduleFolders(const QStringList& given);

/// Loads each shared library in \p folder as a module, in the order of their names. A folder that
/// doesn't exist has none. Returns what went wrong, for each module that couldn't be loaded.
QStringList loadModulesIn(const QString& folder);
