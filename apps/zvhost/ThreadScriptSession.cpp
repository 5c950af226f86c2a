#include "ThreadScriptSession.h"

#include "ScriptDesk.h"
#include "ScriptEngine.h"

#include <optional>
#include <utility>

namespace {

void runTasks(ScriptDesk& desk, const ScriptNames& names)
{
    ScriptEngine engine(names, desk);
    desk.setEngine(&engine);
    while (const std::optional<ScriptDesk::Task> task = desk.take())
        desk.finish(task->source ? engine.run(task->text, *task->source)
                                 : engine.evaluate(task->text));
    desk.setEngine(nullptr);
}

} // namespace

ThreadScriptSession::ThreadScriptSession(const ScriptNames& names, host::ScriptListener listener)
    : m_desk(std::make_shared<ScriptDesk>(std::move(listener)))
    , m_thread([desk = m_desk, names] {
        runTasks(*desk, names);
        desk->setEnded();
    })
{
}

ThreadScriptSession::~ThreadScriptSession()
{
    if (m_desk->close())
        m_thread.join();
    else
        m_thread.detach();
}

void ThreadScriptSession::run(const std::string& text, const std::string& source)
{
    m_desk->put({QString::fromStdString(text), QString::fromStdString(source)});
}

void ThreadScriptSession::evaluate(const std::string& text)
{
    m_desk->put({QString::fromStdString(text), std::nullopt});
}

void ThreadScriptSession::stop()
{
    m_desk->stop();
}
