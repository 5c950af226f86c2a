#pragma once

#include <HostSupport/FuncArgsMinimal.h>
#include <HostSupport/FuncResultMinimal.h>
#include <HostSupport/HostSupport_export.h>
#include <HostSupport/MessageHandler.h>
#include <HostSupport/YRef.h>

/// The type of a script function's argument.
/// @since 0.1 @ingroup host
enum argType {
    ARG_NUMBER = 0, ///< a `double`
    ARG_STRING = 1 ///< NUL-ended UTF-8
};

/// The result of a script function: success or failure.
/// @since 0.1 @ingroup host
enum FUNC_ERROR {
    FUNC_OK = 0, ///< the result is filled
    FUNC_FAILED = 1 ///< the script's call fails
};

/// Runs a function: reads \p args, fills \p result and reports to \p messages; all are valid during
/// the call.
/// @since 0.1 @ingroup host
using FuncHandler = FUNC_ERROR (*)(const FuncArgsMinimal& args, FuncResultMinimal* result,
                                   YRef<MessageHandler> messages);

/// Registers a script function for as long as the object lives.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT FuncConstruct
{
public:
    /// Registers a function. A name that is registered already is replaced.
    /// @param name as scripts call it, NUL-ended UTF-8
    /// @param arguments their types, a table that is copied
    /// @param argumentCount the number of entries of that table
    /// @param resultCount the number of strings that the function returns
    /// @param handler called for each call from a script
    FuncConstruct(const char* name, const argType* arguments, int argumentCount, int resultCount,
                  FuncHandler handler);
    /// A registration has one owner.
    FuncConstruct(const FuncConstruct&) = delete;
    /// A registration has one owner.
    FuncConstruct& operator=(const FuncConstruct&) = delete;

    /// Unregisters the function.
    ~FuncConstruct();
};
