#pragma once

#include <QCoreApplication>
#include <QProgressDialog>

#include <functional>

namespace workbench {

/// Receives how much of the total is done, and returns whether to continue.
using Progress = std::function<bool(int done, int all)>;

/// Thrown when `Progress` asks the work to stop.
struct Stopped
{
};

/// Calls \p progress each time that \p done is a multiple of 256, and throws `Stopped` if it
/// returns false.
void report(const Progress& progress, int done, int all);

/// Shows the progress of long work on the GUI thread, and lets the user stop it. Appears only when
/// the work takes longer than half a second; while it is shown, it blocks the program's other
/// windows.
class ProgressBox
{
    Q_DECLARE_TR_FUNCTIONS(workbench::ProgressBox)

public:
    /// Creates the box. \p text says what is being done.
    ProgressBox(const QString& text, QWidget* parent);

    /// Shows the progress and handles events. Returns false after the user has stopped the work.
    bool report(int done, int all);
    /// Returns `report` as a function, which must not outlive the box.
    Progress progress();

private:
    QProgressDialog m_box;
};

} // namespace workbench
