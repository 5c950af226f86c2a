#include <HostSupport/FuncConstruct.h>

#include "Registry.h"

#include <algorithm>

FuncConstruct::FuncConstruct(const char* name, const argType* arguments, int argumentCount,
                             int resultCount, FuncHandler handler)
{
    host::Registry& registry = host::registry();
    const host::Registry::Function function{
        {name, {arguments, arguments + argumentCount}, resultCount, handler}, this};
    const auto known = std::find_if(registry.functions.begin(), registry.functions.end(),
                                    [name](const auto& f) { return f.info.name == name; });
    if (known != registry.functions.end())
        *known = function;
    else
        registry.functions.push_back(function);
    registry.notify("function " + function.info.name);
}

FuncConstruct::~FuncConstruct()
{
    host::Registry& registry = host::registry();
    const auto mine = std::find_if(registry.functions.begin(), registry.functions.end(),
                                   [this](const auto& f) { return f.owner == this; });
    if (mine == registry.functions.end())
        return;
    const std::string what = "~function " + mine->info.name;
    registry.functions.erase(mine);
    registry.notify(what);
}
