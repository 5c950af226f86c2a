#pragma once

#include "ScriptHost.h"

#include <HostSupport/ScriptSession.h>

#include <QObject>
#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class ScriptEngine;

/// What the two threads of a script session share: the maker's thread puts texts on it, and the
/// engine's thread output, results and calls that the maker's thread has to make.
///
/// The maker's thread never waits here, but at the end. It is the one of the first group, the
/// engine's that of the second.
class ScriptDesk final : public ScriptHost, public std::enable_shared_from_this<ScriptDesk>
{
public:
    struct Task
    {
        QString text;
        std::optional<QString> source; ///< none for a text whose value is asked for
    };

    explicit ScriptDesk(host::ScriptListener listener);
    ~ScriptDesk() override;

    // The maker's thread.

    /// Throws `std::logic_error` until the task before has ended.
    void put(Task task);
    void stop();
    /// Nothing comes back from now on. Returns whether the engine's thread has ended, or ends by
    /// itself within some seconds.
    bool close();

    // The engine's thread.

    /// Waits for it; nothing once the desk has been closed.
    std::optional<Task> take();
    void finish(host::ScriptOutcome outcome);
    /// With nullptr before the engine goes.
    void setEngine(ScriptEngine* engine);
    void setEnded();

    std::vector<std::string> callFunction(const std::string& name,
                                          const std::vector<host::Value>& arguments) override;
    void callCommand(const std::string& name, const std::vector<std::string>& words,
                     const std::string& source) override;
    /// Waits while the maker's thread has fallen far behind.
    void print(const std::string& line) override;

private:
    class Messages;

    void interrupt(bool interrupt);
    void callOnMakersThread(std::function<void()> call);
    void post(std::function<void()> call);
    void append(const std::string& line);
    void deliverOutput();
    void deliverOutcome(const host::ScriptOutcome& outcome);

    const host::ScriptListener m_listener;
    bool m_isRunning = false; // the maker's thread alone
    std::unique_ptr<QObject> m_receiver; // lives there; what is queued for it goes along with it

    std::mutex m_mutex; // for all that follows, and for posting to the receiver
    std::condition_variable m_changed;
    ScriptEngine* m_engine = nullptr;
    std::optional<Task> m_task;
    std::string m_output;
    bool m_isClosed = false;
    bool m_isStopping = false;
    bool m_hasEnded = false;
};
