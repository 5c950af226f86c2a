#include "Registry.h"

namespace host {

void Registry::notify(const std::string& what) const
{
    if (observer)
        observer(what);
}

Registry& registry()
{
    static Registry theRegistry;
    return theRegistry;
}

} // namespace host
