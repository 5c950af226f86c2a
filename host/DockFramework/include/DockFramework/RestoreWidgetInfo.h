#pragma once

#include <QString>

/// The data that a session keeps of a window to open it again.
/// @since 0.1 @ingroup host
struct RestoreWidgetInfo
{
    QString name; ///< the window's name, as given to its constructor
    QString filename; ///< path of its file, or empty
    QString command; ///< the script command that opens it, or empty
};
