#include <zvutil/libzvutil/BackgroundRequestManager.h>

namespace zvutil::libzvutil {

BackgroundRequestManager::BackgroundRequestManager(QObject* parent)
    : basic_request_manager(parent)
{
}

BackgroundRequestManager::~BackgroundRequestManager() = default;

} // namespace zvutil::libzvutil
