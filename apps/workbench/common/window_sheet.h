#pragma once

#include <QString>

namespace workbench {

/// Returns the rules that the workbench's window adds to the style sheet of the application, in the colours
/// of the current style: for the tabs of documents and panels, the titles of windows and the status bar.
QString windowSheet();

} // namespace workbench
