#pragma once

#include <QString>

class QWidget;

namespace workbench {

/// Lets the user choose the file to save to, with Qt's separators; empty if he has cancelled.
///
/// \p extension, with its dot, is added to a name without it. Who chooses a file that exists has agreed
/// to replace it, also where it's the extension that makes it one. \p place is a folder, or a file that
/// is proposed; \p what is what such files are called.
QString saveFileName(QWidget* parent, const QString& title, const QString& place,
                     const QString& what, const QString& extension);

} // namespace workbench
