#pragma once

#include <HostSupport/FuncArgsMinimal.h>
#include <HostSupport/FuncResultMinimal.h>
#include <HostSupport/HostSupport_export.h>
#include <HostSupport/MessageHandler.h>
#include <HostSupport/YRef.h>

/// The type of a script function's argument.
enum argType { ARG_NUMBER = 0, ARG_STRING = 1 };

/// What a script function reports; 0 is success.
enum FUNC_ERROR { FUNC_OK = 0, FUNC_FAILED = 1 };

using FuncHandler = FUNC_ERROR (*)(const FuncArgsMinimal& args, FuncResultMinimal* result,
                                   YRef<MessageHandler> messages);

/// Registers a script function for as long as the object lives.
class HOSTSUPPORT_EXPORT FuncConstruct
{
public:
    /// \p arguments is a table of \p argumentCount entries; the function gives \p resultCount
    /// strings. A name that is registered already is taken over.
    FuncConstruct(const char* name, const argType* arguments, int argumentCount, int resultCount,
                  FuncHandler handler);
    FuncConstruct(const FuncConstruct&) = delete;
    FuncConstruct& operator=(const FuncConstruct&) = delete;

    /// Takes the function back.
    ~FuncConstruct();
};
