#include "ThreadScriptSession.h"

#include "ScriptChannel.h"
#include "ScriptEngine.h"

#include <optional>
#include <utility>

namespace {

void runTasks(ScriptChannel& channel, const ScriptNames& names)
{
    ScriptEngine engine(names, channel);
    channel.setEngine(&engine);
    while (const std::optional<ScriptChannel::Task> task = channel.take())
        channel.finish(task->source ? engine.run(task->text, *task->source)
                                    : engine.evaluate(task->text));
    channel.setEngine(nullptr);
}

} // namespace

ThreadScriptSession::ThreadScriptSession(const ScriptNames& names, host::ScriptListener listener)
    : m_channel(std::make_shared<ScriptChannel>(std::move(listener)))
    , m_thread([channel = m_channel, names] {
        runTasks(*channel, names);
        channel->setEnded();
    })
{
}

ThreadScriptSession::~ThreadScriptSession()
{
    if (m_channel->close())
        m_thread.join();
    else
        m_thread.detach();
}

void ThreadScriptSession::run(const std::string& text, const std::string& source)
{
    m_channel->put({QString::fromStdString(text), QString::fromStdString(source)});
}

void ThreadScriptSession::evaluate(const std::string& text)
{
    m_channel->put({QString::fromStdString(text), std::nullopt});
}

void ThreadScriptSession::stop()
{
    m_channel->stop();
}
