#pragma once

#include <HostSupport/HostSupport_export.h>

#include <functional>
#include <memory>
#include <string>

namespace host {

/// How a script has ended.
/// @since 0.1 @ingroup host
struct ScriptOutcome
{
    std::string
        value; ///< the result of `evaluate`, empty if there is none; always empty after `run`
    std::string error; ///< why the script has failed, or empty
    int line = 0; ///< where it has failed, counted from 1; 0 if not known
    bool isStopped = false; ///< whether `stop` has ended it; then there is an error, too
    std::string
        stack; ///< the calls that led there, a line for each, the innermost first; empty if the
    ///< script failed outside of its functions, or where isn't known
};

/// The callbacks of a session, called by the event loop of the thread that made the session.
/// @since 0.1 @ingroup host
struct ScriptListener
{
    /// Called with one or more lines, without the last line feed: output of the script and messages
    /// of functions and commands.
    std::function<void(const std::string& lines)> printed;
    /// Called once for each `run` and `evaluate`, after all its output.
    std::function<void(const ScriptOutcome& outcome)> finished;
};

/// A script interpreter of its own, for windows of the host: the globals of one text are visible to
/// the next. Scripts run on the session's own thread, so that windows stay responsive; the
/// functions and commands that they call run on the thread that made the session.
///
/// Call all operations on that thread. One text runs at a time: `run` and `evaluate` throw
/// `std::logic_error` until the one before has `finished`.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT ScriptSession
{
public:
    /// Makes a session; only subclasses can call this.
    ScriptSession() = default;
    /// A session has one owner.
    ScriptSession(const ScriptSession&) = delete;
    /// A session has one owner.
    ScriptSession& operator=(const ScriptSession&) = delete;
    /// Stops the text that runs. The listener isn't called any more.
    virtual ~ScriptSession();

    /// Runs a script.
    /// @param text the script, in UTF-8
    /// @param source its name in messages
    virtual void run(const std::string& text, const std::string& source) = 0;

    /// Runs a text and reports its value, as a console does.
    /// @param text an expression or a script, in UTF-8
    virtual void evaluate(const std::string& text) = 0;

    /// Ends the text that runs, if any, soon. A function or command that the text has called is
    /// waited for.
    virtual void stop() = 0;
};

/// Makes a session that reports to the given listener.
/// @since 0.1 @ingroup host
using ScriptSessionMaker = std::function<std::unique_ptr<ScriptSession>(ScriptListener)>;

/// Sets how sessions are made.
/// @param maker called for each session; with an empty one there are none
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT void setScriptSessionMaker(ScriptSessionMaker maker);

/// @return a session that knows the functions and commands that are registered now. Throws
/// `CallError` if the host runs no scripts.
/// @param listener called until the session is destroyed
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT std::unique_ptr<ScriptSession> makeScriptSession(ScriptListener listener);

} // namespace host
