#include <zvutil/libzvutil/GenericTrigger.h>

namespace zvutil::libzvutil {

GenericTrigger::GenericTrigger(QObject* parent)
    : QObject(parent)
{
}

GenericTrigger::~GenericTrigger() = default;

void GenericTrigger::trigger()
{
    Q_EMIT signal();
}

} // namespace zvutil::libzvutil
