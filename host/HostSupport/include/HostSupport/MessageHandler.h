#pragma once

#include <HostSupport/HostSupport_export.h>

/// Receives what a script function or command has to tell the user while it runs.
class HOSTSUPPORT_EXPORT MessageHandler
{
public:
    MessageHandler() = default;
    MessageHandler(const MessageHandler&) = delete;
    MessageHandler& operator=(const MessageHandler&) = delete;
    virtual ~MessageHandler();

    /// \p text is NUL-ended UTF-8 and is valid during the call.
    virtual void message(const char* text) = 0;
};
