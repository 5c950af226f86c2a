#pragma once

#include <HostSupport/HostSupport_export.h>

#include <functional>
#include <memory>
#include <string>

namespace host {

/// How a script has ended.
struct ScriptOutcome
{
    std::string
        value; ///< what `evaluate` has computed, empty for nothing; always empty after `run`
    std::string error; ///< empty, or why it has failed
    int line = 0; ///< where it has failed, counted from 1; 0 if not known
    bool isStopped = false; ///< whether `stop` has ended it; then there is an error, too
};

/// Who hears of a session. Both are called on the thread that has made the session, by its event
/// loop.
struct ScriptListener
{
    /// One or more lines without the last line feed: what the script prints and what functions and
    /// commands tell.
    std::function<void(const std::string& lines)> printed;
    /// Once for each `run` and `evaluate`, behind all that was printed.
    std::function<void(const ScriptOutcome& outcome)> finished;
};

/// A script interpreter of its own, for windows of the host: what one text defines as global is there
/// for the next. Scripts run on a thread of the session's own, so that windows stay alive; the functions and
/// commands that they call run on the thread that has made the session.
///
/// All operations belong on that thread. One text at a time: `run` and `evaluate` throw
/// `std::logic_error` until the one before has `finished`.
class HOSTSUPPORT_EXPORT ScriptSession
{
public:
    ScriptSession() = default;
    ScriptSession(const ScriptSession&) = delete;
    ScriptSession& operator=(const ScriptSession&) = delete;
    /// Stops the text that runs. The listener isn't called any more.
    virtual ~ScriptSession();

    /// Runs a script. \p source is its name in messages.
    virtual void run(const std::string& text, const std::string& source) = 0;

    /// Runs a text and tells its value, as a console does.
    virtual void evaluate(const std::string& text) = 0;

    /// Has the text that runs, if one does, end soon. A function or command that it has called is
    /// waited for.
    virtual void stop() = 0;
};

using ScriptSessionMaker = std::function<std::unique_ptr<ScriptSession>(ScriptListener)>;

/// Sets how sessions are made; an empty one for none.
HOSTSUPPORT_EXPORT void setScriptSessionMaker(ScriptSessionMaker maker);

/// A session that knows the functions and commands that are registered now. Throws `CallError` if
/// the host runs no scripts.
HOSTSUPPORT_EXPORT std::unique_ptr<ScriptSession> makeScriptSession(ScriptListener listener);

} // namespace host
