#pragma once

#include <QString>

/// Loads libzvutil: \p file, or if that is empty the one beside this program. It stays loaded.
/// Returns an empty text, or what went wrong.
QString loadLibrary(const QString& file);

/// Loads a module, a shared library that links against libzvutil. It stays loaded.
/// Returns an empty text, or what went wrong.
QString loadModule(const QString& file);

/// Loads the module that belongs to this program under \p name, from where the library lies.
/// Returns an empty text, or what went wrong.
QString loadOwnModule(const QString& name);
