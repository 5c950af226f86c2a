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

/// What is registered now. On the thread of the registries.
ScriptNames registeredNames();

/// What scripts reach of the program around them. Called on the engine's thread. What the first two
/// throw is an exception for the script as well.
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
    /// A line of the script's output.
    virtual void print(const std::string& line) = 0;
};
