#include <zvutil/libzvutil/abstract_request_manager.h>

namespace zvutil::libzvutil {

abstract_request_manager::abstract_request_manager(QObject* parent)
    : QObject(parent)
{
}

abstract_request_manager::~abstract_request_manager() = default;

} // namespace zvutil::libzvutil
