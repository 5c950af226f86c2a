#pragma once

#include <QString>

class QWidget;

namespace workbench {

/// Asks the user for the file to save to. Returns its path, with Qt's separators, or an empty text
/// if the user has cancelled.
///
/// \p extension, with its dot, is added to a name that lacks it. A user who chooses an existing
/// file has agreed to replace it, even if only the added extension makes the name that of a file.
/// \p start is a folder, or a proposed file; one without a folder is put where the user has saved last, or
/// else among the user's documents. \p what is what such files are called.
QString saveFileName(QWidget* parent, const QString& title, const QString& start,
                     const QString& what, const QString& extension);

} // namespace workbench
