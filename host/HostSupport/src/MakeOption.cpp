#include <HostSupport/MakeOption.h>

#include "Registry.h"

#include <algorithm>

MakeOption::MakeOption(const char* source, int line, const YString& name, const char* defaultValue,
                       OptionCacheStatus cacheStatus, bool flag)
{
    host::Registry& registry = host::registry();
    const host::OptionInfo option{name.c_str(), defaultValue, source, line, cacheStatus, flag};
    const auto known = std::find_if(registry.options.begin(), registry.options.end(),
                                    [&option](const auto& o) { return o.name == option.name; });
    if (known != registry.options.end())
        *known = option;
    else
        registry.options.push_back(option);
    registry.notify("option " + option.name);
}
