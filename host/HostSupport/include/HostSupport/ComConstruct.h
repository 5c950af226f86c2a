#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/MessageHandler.h>
#include <HostSupport/YRef.h>

/// What a script command reports; 0 is success.
enum COMERROR { COM_OK = 0, COM_FAILED = 1 };

/// Where in a script a command stands.
struct ScpParseContext
{
    const char* source; ///< name of the script, NUL-ended UTF-8
    int line; ///< counted from 1; 0 if not known
};

using ComHandler = COMERROR (*)(int wordCount, char** words, YRef<MessageHandler> messages,
                                const ScpParseContext& context);

/// Registers a script command. It is never taken back: a library that registered one must not be
/// called through it once it has been unloaded.
class HOSTSUPPORT_EXPORT ComConstruct
{
public:
    /// \p flags is kept and has no meaning here. A name that is registered already is taken over.
    ComConstruct(const char* name, ComHandler handler, int flags);
};
