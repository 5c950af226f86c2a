#pragma once

#include <QString>

/// Loads libzvutil: \p file, or if that is empty the library beside this program. The library stays
/// loaded. Returns an empty text, or what went wrong.
QString loadLibrary(const QString& file);

/// Loads a module, a shared library that links against libzvutil. The module stays loaded. Returns
/// an empty text, or what went wrong.
QString loadModule(const QString& file);

/// Loads this program's module \p name, which is searched for in the same places as libzvutil. The
/// module stays loaded. Returns an empty text, or what went wrong.
QString loadOwnModule(const QString& name);
