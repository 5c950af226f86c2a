#include "common/request_manager.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>

#include <QApplication>
#include <QPointer>

namespace workbench {

using zvutil::libzvutil::BackgroundRequestManager;

namespace {

BackgroundRequestManager& made(QPointer<QObject>& manager)
{
    if (!manager)
        manager = new BackgroundRequestManager(qApp);
    return static_cast<BackgroundRequestManager&>(*manager);
}

} // namespace

BackgroundRequestManager& requestManager()
{
    static QPointer<QObject> manager;
    return made(manager);
}

BackgroundRequestManager& recoveryManager()
{
    static QPointer<QObject> manager;
    return made(manager);
}

} // namespace workbench
