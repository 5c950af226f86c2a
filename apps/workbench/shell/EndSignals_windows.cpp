#include "shell/EndSignals.h"

#include <QMetaObject>

#include <atomic>

#include <windows.h>

namespace workbench {

namespace {

std::atomic<EndSignals*> current{nullptr};

/// Is called on a thread of its own. The system ends the program when this returns, or after some seconds.
BOOL WINAPI noteEnd(DWORD /*event*/)
{
    EndSignals* const signals = current;
    if (!signals)
        return FALSE;
    QMetaObject::invokeMethod(signals, &EndSignals::received, Qt::BlockingQueuedConnection);
    return TRUE;
}

} // namespace

EndSignals::EndSignals(QObject* parent)
    : QObject(parent)
{
    current = this;
    SetConsoleCtrlHandler(&noteEnd, TRUE);
}

EndSignals::~EndSignals()
{
    SetConsoleCtrlHandler(&noteEnd, FALSE);
    current = nullptr;
}

} // namespace workbench
