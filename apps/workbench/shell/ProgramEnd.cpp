#include "shell/ProgramEnd.h"

#include "shell/EndSignals.h"
#include "shell/Workbench.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace workbench {

ProgramEnd::ProgramEnd(Workbench& window)
    : QObject(&window)
{
    connect(new EndSignals(this), &EndSignals::received, &window, [&window] {
        // The event loop handles what is there already before it ends, and no input may change what is kept.
        window.setEnabled(false);
        window.keepWork();
        QCoreApplication::exit(0);
    });
    // Qt would close the windows, which ask about changes. The session may go on if another program refuses its end,
    // so nothing is closed.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    connect(
        qApp, &QGuiApplication::commitDataRequest, &window, [&window] { window.keepWork(); },
        Qt::DirectConnection);
}

} // namespace workbench
