#pragma once

#include <QProgressDialog>

#include <functional>

namespace workbench {

/// Is told how much of all has been done, and says whether to go on.
using Progress = std::function<bool(int done, int all)>;

/// Thrown by work that was told not to go on.
struct Stopped
{
};

/// Tells \p progress, each time that \p done is a multiple of 256, and throws `Stopped` if it says so.
void report(const Progress& progress, int done, int all);

/// Shows how far long work on the GUI's thread is, and lets the user stop it. It comes up only when
/// the work takes longer than half a second; as long as it is there, the rest of the program waits.
class ProgressBox
{
public:
    /// \p text tells what is being done.
    ProgressBox(const QString& text, QWidget* parent);

    /// Handles events. Returns false once the user has stopped it.
    bool report(int done, int all);
    /// The same as a function, which must not outlive the box.
    Progress progress();

private:
    QProgressDialog m_box;
};

} // namespace workbench
