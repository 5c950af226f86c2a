#include <HostSupport/ScriptSession.h>

#include <HostSupport/host.h>

#include <utility>

namespace host {

namespace {

ScriptSessionMaker& theMaker()
{
    static ScriptSessionMaker maker;
    return maker;
}

} // namespace

ScriptSession::~ScriptSession() = default;

void setScriptSessionMaker(ScriptSessionMaker maker)
{
    theMaker() = std::move(maker);
}

std::unique_ptr<ScriptSession> makeScriptSession(ScriptListener listener)
{
    if (!theMaker())
        throw CallError("This host runs no scripts");
    return theMaker()(std::move(listener));
}

} // namespace host
