#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/MessageHandler.h>
#include <HostSupport/YRef.h>

/// The result of a script command: success or failure.
/// @since 0.1 @ingroup host
enum COMERROR {
    COM_OK = 0, ///< the command is done
    COM_FAILED = 1 ///< the script's call fails
};

/// The place of a command in a script.
/// @since 0.1 @ingroup host
struct ScpParseContext
{
    const char* source; ///< name of the script, NUL-ended UTF-8
    int line; ///< counted from 1; 0 if not known
};

/// Runs a command. The \p wordCount words, the first of them the command's name, are NUL-ended
/// UTF-8 and valid during the call.
/// @since 0.1 @ingroup host
using ComHandler = COMERROR (*)(int wordCount, char** words, YRef<MessageHandler> messages,
                                const ScpParseContext& context);

/// Registers a script command for good: after the library that registered it was unloaded, the
/// command must not be called any more.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT ComConstruct
{
public:
    /// Registers a command. A name that is registered already is replaced.
    /// @param name the command's first word, NUL-ended UTF-8
    /// @param handler called for each use of the command
    /// @param flags kept, without a meaning here
    ComConstruct(const char* name, ComHandler handler, int flags);
};
