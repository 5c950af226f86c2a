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

/// The host's side of the registries: lists of what is registered, and calls to it.
///
/// Call these functions only on the thread that runs scripts. All texts are UTF-8.
namespace host {

/// An argument of a script function.
/// @since 0.1 @ingroup host
using Value = std::variant<double, std::string>;

/// A registered script function.
/// @since 0.1 @ingroup host
struct FunctionInfo
{
    std::string name; ///< as scripts call it
    std::vector<argType> arguments; ///< their types, in order
    int resultCount; ///< number of strings that it returns
    FuncHandler handler; ///< what runs it
};

/// A registered script command.
/// @since 0.1 @ingroup host
struct CommandInfo
{
    std::string name; ///< as scripts call it
    int flags; ///< as registered
    ComHandler handler; ///< what runs it
};

/// A declared option.
/// @since 0.1 @ingroup host
struct OptionInfo
{
    std::string name; ///< key in the options file
    std::string defaultValue; ///< value until it is set
    std::string source; ///< source file of the declaration
    int line; ///< line of the declaration
    OptionCacheStatus cacheStatus; ///< as declared
    bool flag; ///< as declared
};

/// A call that couldn't be made, or a function or command that reported an error.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT CallError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    /// A copy with the same message.
    CallError(const CallError&) = default;
    /// Frees the message unless a copy holds it.
    ~CallError() override;
};

/// @return the functions that are registered now, in the order of registration.
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::vector<FunctionInfo> functions();
/// @return the commands, in the order of registration.
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::vector<CommandInfo> commands();
/// @return the options, in the order of declaration.
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::vector<OptionInfo> options();

/// Called after each registration with "function NAME", "command NAME" or "option NAME", and after
/// a function was unregistered with "~function NAME".
/// @since 0.1 @ingroup host
using RegistrationObserver = std::function<void(const std::string& what)>;

/// Sets the one observer.
/// @param observer an empty one switches it off
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void setRegistrationObserver(RegistrationObserver observer);

/// Calls a script function.
///
/// Throws `CallError` for an unknown function, a wrong number or type of arguments (the message
/// names the function and what it expects) and a function that reports an error. Exceptions of the
/// handler are passed on.
/// @param name the function's name
/// @param arguments one for each entry of `FunctionInfo::arguments`
/// @param messages passed to the function's handler
/// @return the function's strings
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::vector<std::string> callFunction(const std::string& name,
                                                         const std::vector<Value>& arguments,
                                                         const YRef<MessageHandler>& messages);

/// Calls a script command. Fails as `callFunction` does.
/// @param name the command's name
/// @param words what follows the name
/// @param messages passed to the command's handler
/// @param context where the command stands
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void callCommand(const std::string& name, const std::vector<std::string>& words,
                                    const YRef<MessageHandler>& messages,
                                    const ScpParseContext& context);

/// Sets the INI file that holds the options. By default it lies in the user's configuration
/// directory.
/// @param path the file need not exist
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void setOptionsFile(const std::string& path);
/// @return the path of the options file.
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::string optionsFile();

/// Sets an option and writes the options file. Throws `std::runtime_error` if that fails.
/// @param name the option's key
/// @param value its text from now on
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void writeOption(const std::string& name, const std::string& value);

/// Removes the value of an option, so that its default counts again. Throws `std::runtime_error` if
/// that can't be written.
/// @param name the option's key
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void resetOption(const std::string& name);

/// Sets a path that `sp_GetSystemPathSymbolValue` returns.
/// @param symbol the name, also one of those that the host knows
/// @param value the path
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void setPathSymbol(const std::string& symbol, const std::string& value);

/// Sets the name that `sp_GetProductFolderName` returns; "zvhost" at first.
/// @param name a folder's name, without a path
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void setProductFolderName(const std::string& name);

} // namespace host
