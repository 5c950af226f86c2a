#include "ConsoleScriptHost.h"

#include "standard_error.h"

#include <cstdio>
#include <memory>

namespace {

class ConsoleMessages final : public MessageHandler
{
public:
    void message(const char* text) override { writeError(QString::fromUtf8(text)); }
};

} // namespace

ConsoleScriptHost::ConsoleScriptHost()
    : m_messages(std::make_unique<ConsoleMessages>())
{
}

ConsoleScriptHost::~ConsoleScriptHost() = default;

std::vector<std::string> ConsoleScriptHost::callFunction(const std::string& name,
                                                         const std::vector<host::Value>& arguments)
{
    return host::callFunction(name, arguments, m_messages);
}

void ConsoleScriptHost::callCommand(const std::string& name, const std::vector<std::string>& words,
                                    const std::string& source)
{
    host::callCommand(name, words, m_messages, {source.c_str(), 0});
}

void ConsoleScriptHost::print(const std::string& line)
{
    const std::string text = line + '\n';
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}
