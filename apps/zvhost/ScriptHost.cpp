#include "ScriptHost.h"

ScriptHost::~ScriptHost() = default;

ScriptNames registeredNames()
{
    ScriptNames names;
    for (const host::FunctionInfo& function : host::functions())
        names.functions.push_back(function.name);
    for (const host::CommandInfo& command : host::commands())
        names.commands.push_back(command.name);
    return names;
}
