#pragma once

#include <HostSupport/ComConstruct.h>
#include <HostSupport/FuncConstruct.h>
#include <HostSupport/HostSupport_export.h>
#include <HostSupport/MakeOption.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

/// The host's side of the registries: what has been registered, and how to call it.
///
/// All texts are UTF-8. Everything here is for one thread, the one that runs scripts.
namespace host {

/// An argument of a script function.
using Value = std::variant<double, std::string>;

struct FunctionInfo
{
    std::string name;
    std::vector<argType> arguments;
    int resultCount;
    FuncHandler handler;
};

struct CommandInfo
{
    std::string name;
    int flags;
    ComHandler handler;
};

struct OptionInfo
{
    std::string name;
    std::string defaultValue;
    std::string source;
    int line;
    OptionCacheStatus cacheStatus;
    bool flag;
};

/// A call that didn't come about, or a function or command that reported an error.
class HOSTSUPPORT_EXPORT CallError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    CallError(const CallError&) = default;
    ~CallError() override;
};

/// What is registered at the moment, in the order of registration.
HOSTSUPPORT_EXPORT std::vector<FunctionInfo> functions();
HOSTSUPPORT_EXPORT std::vector<CommandInfo> commands();
HOSTSUPPORT_EXPORT std::vector<OptionInfo> options();

/// Called after each registration with "function NAME", "command NAME" or "option NAME", and after
/// a function was taken back with "~function NAME".
using RegistrationObserver = std::function<void(const std::string& what)>;

/// Sets the one observer; an empty one switches it off.
HOSTSUPPORT_EXPORT void setRegistrationObserver(RegistrationObserver observer);

/// Calls a script function and returns its result.
///
/// Throws `CallError` for an unknown function, a wrong number or type of arguments (the message
/// names the function and what it expects) and a function that reports an error. What the handler
/// throws passes through.
HOSTSUPPORT_EXPORT std::vector<std::string> callFunction(const std::string& name,
                                                         const std::vector<Value>& arguments,
                                                         const YRef<MessageHandler>& messages);

/// Calls a script command with \p words behind its name. Failures as for `callFunction`.
HOSTSUPPORT_EXPORT void callCommand(const std::string& name, const std::vector<std::string>& words,
                                    const YRef<MessageHandler>& messages,
                                    const ScpParseContext& context);

/// The INI file that holds the options; it need not exist. By default it lies in the user's
/// configuration directory.
HOSTSUPPORT_EXPORT void setOptionsFile(const std::string& path);
HOSTSUPPORT_EXPORT std::string optionsFile();

/// Sets an option and writes the options file. Throws `std::runtime_error` if that fails.
HOSTSUPPORT_EXPORT void writeOption(const std::string& name, const std::string& value);

/// Makes an option as if it had never been set. Throws `std::runtime_error` if that can't be
/// written.
HOSTSUPPORT_EXPORT void resetOption(const std::string& name);

/// Sets what `sp_GetSystemPathSymbolValue` answers for \p symbol.
HOSTSUPPORT_EXPORT void setPathSymbol(const std::string& symbol, const std::string& value);

/// Sets what `sp_GetProductFolderName` answers; "zvhost" to begin with.
HOSTSUPPORT_EXPORT void setProductFolderName(const std::string& name);

} // namespace host
