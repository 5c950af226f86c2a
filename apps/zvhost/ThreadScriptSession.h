#pragma once

#include "ScriptHost.h"

#include <HostSupport/ScriptSession.h>

#include <memory>
#include <string>
#include <thread>

class ScriptChannel;

/// A session whose engine has a thread of its own.
///
/// An engine that can't be interrupted, in the midst of a huge regular expression for example,
/// keeps its thread after the session is destroyed.
class ThreadScriptSession final : public host::ScriptSession
{
public:
    ThreadScriptSession(const ScriptNames& names, host::ScriptListener listener);
    ~ThreadScriptSession() override;

    void run(const std::string& text, const std::string& source) override;
    void evaluate(const std::string& text) override;
    void stop() override;

private:
    std::shared_ptr<ScriptChannel> m_channel;
    std::thread m_thread;
};
