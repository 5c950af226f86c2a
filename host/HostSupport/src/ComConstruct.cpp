#include <HostSupport/ComConstruct.h>

#include "Registry.h"

#include <algorithm>

ComConstruct::ComConstruct(const char* name, ComHandler handler, int flags)
{
    host::Registry& registry = host::registry();
    const host::CommandInfo command{name, flags, handler};
    const auto known = std::find_if(registry.commands.begin(), registry.commands.end(),
                                    [name](const auto& c) { return c.name == name; });
    if (known != registry.commands.end())
        *known = command;
    else
        registry.commands.push_back(command);
    registry.notify("command " + command.name);
}
