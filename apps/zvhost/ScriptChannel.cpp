#include "ScriptChannel.h"

#include "ScriptEngine.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t outputLimit = 65'536;
constexpr std::chrono::seconds maxClosingTime{3};

} // namespace

/// Appends the messages of functions and commands to the script's output.
class ScriptChannel::Messages final : public MessageHandler
{
public:
    explicit Messages(std::shared_ptr<ScriptChannel> channel)
        : m_channel(std::move(channel))
    {
    }

    void message(const char* text) override { m_channel->append(text); }

private:
    std::shared_ptr<ScriptChannel> m_channel;
};

ScriptChannel::ScriptChannel(host::ScriptListener listener)
    : m_listener(std::move(listener))
    , m_receiver(std::make_unique<QObject>())
{
}

ScriptChannel::~ScriptChannel() = default;

void ScriptChannel::put(Task task)
{
    if (m_isRunning)
        throw std::logic_error("A script is running already");
    m_isRunning = true;
    const std::lock_guard lock(m_mutex);
    m_isStopping = false;
    interrupt(false);
    m_task = std::move(task);
    m_changed.notify_all();
}

void ScriptChannel::stop()
{
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
    interrupt(true);
    m_changed.notify_all();
}

bool ScriptChannel::close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        m_isStopping = true;
        interrupt(true);
        m_changed.notify_all();
    }
    // The engine's thread posts to the receiver while it holds the lock, but no longer once the
    // channel is closed.
    m_receiver.reset();
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, maxClosingTime, [this] { return m_hasEnded; });
}

std::optional<ScriptChannel::Task> ScriptChannel::take()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_task || m_isClosed; });
    if (m_isClosed)
        return {};
    return std::exchange(m_task, std::nullopt);
}

void ScriptChannel::finish(host::ScriptOutcome outcome)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    outcome.isStopped = m_isStopping && !outcome.error.empty();
    post([self = shared_from_this(), outcome = std::move(outcome)] {
        self->deliverOutcome(outcome);
    });
}

void ScriptChannel::setEngine(ScriptEngine* engine)
{
    const std::lock_guard lock(m_mutex);
    m_engine = engine;
    interrupt(m_isStopping);
}

void ScriptChannel::setEnded()
{
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
    m_changed.notify_all();
}

void ScriptChannel::interrupt(bool interrupt)
{
    if (m_engine)
        m_engine->interrupt(interrupt);
}

std::vector<std::string> ScriptChannel::callFunction(const std::string& name,
                                                     const std::vector<host::Value>& arguments)
{
    // The posted call may outlive this function when the channel is closed, so both share the
    // result.
    const auto result = std::make_shared<std::vector<std::string>>();
    callOnMakersThread([self = shared_from_this(), result, name, arguments] {
        const YRef<MessageHandler> messages(std::make_unique<Messages>(self));
        *result = host::callFunction(name, arguments, messages);
    });
    return *result;
}

void ScriptChannel::callCommand(const std::string& name, const std::vector<std::string>& words,
                                const std::string& source)
{
    callOnMakersThread([self = shared_from_this(), name, words, source] {
        const YRef<MessageHandler> messages(std::make_unique<Messages>(self));
        host::callCommand(name, words, messages, {source.c_str(), 0});
    });
}

void ScriptChannel::callOnMakersThread(std::function<void()> call)
{
    struct Result
    {
        bool isDone = false;
        std::exception_ptr failure;
    };
    const auto result = std::make_shared<Result>();
    std::unique_lock lock(m_mutex);
    if (m_isClosed || m_isStopping)
        throw std::runtime_error("The script was stopped");
    post([self = shared_from_this(), result, call = std::move(call)] {
        std::exception_ptr failure;
        try {
            call();
        } catch (...) {
            failure = std::current_exception();
        }
        const std::lock_guard guard(self->m_mutex);
        *result = {true, failure};
        self->m_changed.notify_all();
    });
    m_changed.wait(lock, [this, &result] { return result->isDone || m_isClosed; });
    if (!result->isDone)
        throw std::runtime_error("The script was stopped");
    if (result->failure)
        std::rethrow_exception(result->failure);
}

/// Posts \p call to the maker's thread. Call with the lock held, and not after the channel is
/// closed.
void ScriptChannel::post(std::function<void()> call)
{
    QMetaObject::invokeMethod(m_receiver.get(), std::move(call), Qt::QueuedConnection);
}

void ScriptChannel::print(const std::string& line)
{
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(
            lock, [this] { return m_output.size() < outputLimit || m_isClosed || m_isStopping; });
    }
    append(line);
}

void ScriptChannel::append(const std::string& line)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    if (m_output.empty())
        post([self = shared_from_this()] { self->deliverOutput(); });
    m_output += line + '\n';
}

void ScriptChannel::deliverOutput()
{
    std::string output;
    {
        const std::lock_guard lock(m_mutex);
        output = std::exchange(m_output, std::string());
        m_changed.notify_all();
    }
    output.pop_back();
    m_listener.printed(output);
}

void ScriptChannel::deliverOutcome(const host::ScriptOutcome& outcome)
{
    m_isRunning = false;
    m_listener.finished(outcome);
}
