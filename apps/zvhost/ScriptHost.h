#pragma once

#include <HostSupport/host.h>

#include <string>
#include <vector>

/// The names that are registered for scripts.
struct ScriptNames
{
    std::vector<std::string> functions;
    std::vector<std::string> commands;
};

/// Returns the names that are registered now. Call on the thread of the registries.
ScriptNames registeredNames();

/// The operations of the surrounding program that scripts can call. The engine calls them on its
/// own thread. An exception of the first two becomes one of the script.
class ScriptHost
{
public:
    ScriptHost() = default;
    ScriptHost(const ScriptHost&) = delete;
    ScriptHost& operator=(const ScriptHost&) = delete;
    virtual ~ScriptHost();

    virtual std::vector<std::string> callFunction(const std::string& name,
                                                  const std::vector<host::Value>& arguments) = 0;
    virtual void callCommand(const std::string& name, const std::vector<std::string>& words,
                             const std::string& source) = 0;
    /// Writes a line of the script's output.
    virtual void print(const std::string& line) = 0;
};
