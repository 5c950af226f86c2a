#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QSettings;

namespace workbench {

/// What is open in the workbench from one start to the next. Files are full names, as Qt writes them.
struct Session
{
    QStringList files;
    QString current; ///< the file that the user works on; empty if there is none
    QByteArray geometry; ///< of the window
    QByteArray layout; ///< of the panels and documents in it

    /// What \p settings have kept; empty what they haven't.
    static Session restored(const QSettings& settings);

    void saveTo(QSettings& settings) const;
};

/// Where sessions are kept, beside the host's options.
QString sessionFile();

} // namespace workbench
