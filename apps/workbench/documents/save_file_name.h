#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace workbench {

/// A kind of files that the user may choose.
struct FileKind
{
    QString what; ///< what such files are called
    QString extension; ///< with its dot
};

/// Asks the user for the file to save to. Returns its path, with Qt's separators, or an empty text
/// if the user has cancelled.
///
/// \p extension, with its dot, is added to a name that lacks it. A user who chooses an existing
/// file has agreed to replace it, even if only the added extension makes the name that of a file.
/// \p start is a folder, or a proposed file; one without a folder is put where the user has saved last, or
/// else among the user's documents. \p what is what such files are called.
QString saveFileName(QWidget* parent, const QString& title, const QString& start,
                     const QString& what, const QString& extension);

/// The same for several kinds, of which the first is proposed. The extension of a name tells its kind; one that lacks
/// all of them gets that of the kind which is chosen in the dialog.
QString saveFileName(QWidget* parent, const QString& title, const QString& start,
                     const std::vector<FileKind>& kinds);

} // namespace workbench
