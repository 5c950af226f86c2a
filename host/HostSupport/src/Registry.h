#pragma once

#include <HostSupport/host.h>

#include <map>
#include <string>
#include <vector>

namespace host {

/// The registrations and settings of the host.
struct Registry
{
    struct Function
    {
        FunctionInfo info;
        const FuncConstruct* owner;
    };

    std::vector<Function> functions;
    std::vector<CommandInfo> commands;
    std::vector<OptionInfo> options;
    std::map<std::string, std::string> pathSymbols;
    std::string productFolderName = "zvhost";
    std::string optionsFile;
    RegistrationObserver observer;

    void notify(const std::string& what) const;
};

/// The one registry. A function-local static, so that it exists before any library registers while
/// it loads.
Registry& registry();

} // namespace host
