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

/// Connects the two threads of a script session: the maker's thread puts texts on the channel, the
/// engine's thread returns output and results, and has its calls executed on the maker's thread.
///
/// The first group of operations belongs to the maker's thread, which never waits here except in
/// `close`; the second group belongs to the engine's thread.
class ScriptChannel final : public ScriptHost, public std::enable_shared_from_this<ScriptChannel>
{
public:
    struct Task
    {
        QString text;
        std::optional<QString> source; ///< name in messages; none for a text to evaluate
    };

    explicit ScriptChannel(host::ScriptListener listener);
    ~ScriptChannel() override;

    // Operations of the maker's thread.

    /// Hands over a text to run. Throws `std::logic_error` until the text before has ended.
    void put(Task task);
    void stop();
    /// Stops the script, and reports nothing to the listener from now on. Returns whether the
    /// engine's thread has ended, or ends by itself within some seconds.
    bool close();

    // Operations of the engine's thread.

    /// Waits for the next text and returns it, or nothing once the channel has been closed.
    std::optional<Task> take();
    void finish(host::ScriptOutcome outcome);
    /// Sets the engine to interrupt; nullptr before the engine is destroyed.
    void setEngine(ScriptEngine* engine);
    void setEnded();

    std::vector<std::string> callFunction(const std::string& name,
                                          const std::vector<host::Value>& arguments) override;
    void callCommand(const std::string& name, const std::vector<std::string>& words,
                     const std::string& source) override;
    /// Appends a line to the output. Waits while the maker's thread is far behind.
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
    bool m_isRunning = false; // used on the maker's thread alone
    std::unique_ptr<QObject> m_receiver; // on the maker's thread; drops queued calls when destroyed

    std::mutex m_mutex; // guards all that follows, and posting to the receiver
    std::condition_variable m_changed;
    ScriptEngine* m_engine = nullptr;
    std::optional<Task> m_task;
    std::string m_output;
    bool m_isClosed = false;
    bool m_isStopping = false;
    bool m_hasEnded = false;
};
