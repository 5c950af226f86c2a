#pragma once

#include "ScriptHost.h"

/// Serves scripts on the thread of the registries: their output goes to standard output, the
/// messages of functions and commands to standard error.
class ConsoleScriptHost final : public ScriptHost
{
public:
    ConsoleScriptHost();
    ~ConsoleScriptHost() override;

    std::vector<std::string> callFunction(const std::string& name,
                                          const std::vector<host::Value>& arguments) override;
    void callCommand(const std::string& name, const std::vector<std::string>& words,
                     const std::string& source) override;
    void print(const std::string& line) override;

private:
    YRef<MessageHandler> m_messages;
};
