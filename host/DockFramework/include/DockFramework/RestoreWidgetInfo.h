#pragma once

#include <QString>

/// What a session has to remember of a window to open it again.
struct RestoreWidgetInfo
{
    QString name; ///< the window's own, as its constructor got it
    QString filename; ///< empty for what has no file
    QString command; ///< the script command that opens it, or empty
};
