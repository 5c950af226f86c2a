#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QSettings;

namespace workbench {

/// The state of the workbench that is kept from one start to the next. Files are full paths with
/// Qt's separators.
struct Session
{
    QStringList files;
    QString current; ///< file of the current document; empty if there is none
    QByteArray geometry; ///< position and size of the window
    QByteArray layout; ///< places of the panels and documents in the window

    /// Returns the session in \p settings; a member that they lack is empty.
    static Session restored(const QSettings& settings);

    void saveTo(QSettings& settings) const;
};

/// Returns the file in which sessions are kept, beside that of the host's options.
QString sessionFile();

} // namespace workbench
