#include "common/requests.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>

#include <QApplication>
#include <QPointer>

namespace workbench {

zvutil::libzvutil::BackgroundRequestManager& requests()
{
    using zvutil::libzvutil::BackgroundRequestManager;
    static QPointer<QObject> manager;
    if (!manager)
        manager = new BackgroundRequestManager(qApp);
    return static_cast<BackgroundRequestManager&>(*manager);
}

} // namespace workbench
