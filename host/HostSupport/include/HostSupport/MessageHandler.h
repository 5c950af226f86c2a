#pragma once

#include <HostSupport/HostSupport_export.h>

/// Receives the messages for the user of a script function or command while it runs.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT MessageHandler
{
public:
    /// Makes a handler; only subclasses can call this.
    MessageHandler() = default;
    /// Handlers are shared, not copied.
    MessageHandler(const MessageHandler&) = delete;
    /// Handlers are shared, not copied.
    MessageHandler& operator=(const MessageHandler&) = delete;
    /// Called when the last reference is released.
    virtual ~MessageHandler();

    /// Takes one message.
    /// @param text NUL-ended UTF-8, valid during the call
    virtual void message(const char* text) = 0;
};
