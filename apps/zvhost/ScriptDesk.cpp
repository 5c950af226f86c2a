#include "ScriptDesk.h"

#include "ScriptEngine.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t outputLimit = 65'536;
constexpr std::chrono::seconds longestFarewell{3};

} // namespace

/// What functions and commands tell is output of the script.
class ScriptDesk::Messages final : public MessageHandler
{
public:
    explicit Messages(std::shared_ptr<ScriptDesk> desk)
        : m_desk(std::move(desk))
    {
    }

    void message(const char* text) override { m_desk->append(text); }

private:
    std::shared_ptr<ScriptDesk> m_desk;
};

ScriptDesk::ScriptDesk(host::ScriptListener listener)
    : m_listener(std::move(listener))
    , m_receiver(std::make_unique<QObject>())
{
}

ScriptDesk::~ScriptDesk() = default;

void ScriptDesk::put(Task task)
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

void ScriptDesk::stop()
{
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
    interrupt(true);
    m_changed.notify_all();
}

bool ScriptDesk::close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        m_isStopping = true;
        interrupt(true);
        m_changed.notify_all();
    }
    // Not before: the other thread posts to it while it holds the lock.
    m_receiver.reset();
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, longestFarewell, [this] { return m_hasEnded; });
}

std::optional<ScriptDesk::Task> ScriptDesk::take()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_task || m_isClosed; });
    if (m_isClosed)
        return {};
    return std::exchange(m_task, std::nullopt);
}

void ScriptDesk::finish(host::ScriptOutcome outcome)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    outcome.isStopped = m_isStopping && !outcome.error.empty();
    post([self = shared_from_this(), outcome = std::move(outcome)] {
        self->deliverOutcome(outcome);
    });
}

void ScriptDesk::setEngine(ScriptEngine* engine)
{
    const std::lock_guard lock(m_mutex);
    m_engine = engine;
    interrupt(m_isStopping);
}

void ScriptDesk::setEnded()
{
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
    m_changed.notify_all();
}

void ScriptDesk::interrupt(bool interrupt)
{
    if (m_engine)
        m_engine->interrupt(interrupt);
}

std::vector<std::string> ScriptDesk::callFunction(const std::string& name,
                                                  const std::vector<host::Value>& arguments)
{
    // Shared, since the call may outlive this one when the desk is closed.
    const auto result = std::make_shared<std::vector<std::string>>();
    callOnMakersThread([self = shared_from_this(), result, name, arguments] {
        const YRef<MessageHandler> messages(std::make_unique<Messages>(self));
        *result = host::callFunction(name, arguments, messages);
    });
    return *result;
}

void ScriptDesk::callCommand(const std::string& name, const std::vector<std::string>& words,
                             const std::string& source)
{
    callOnMakersThread([self = shared_from_this(), name, words, source] {
        const YRef<MessageHandler> messages(std::make_unique<Messages>(self));
        host::callCommand(name, words, messages, {source.c_str(), 0});
    });
}

void ScriptDesk::callOnMakersThread(std::function<void()> call)
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

/// Has \p call made on the maker's thread. With the lock held, and not once the desk is closed.
void ScriptDesk::post(std::function<void()> call)
{
#ifndef __clang_analyzer__ // It doesn't see that Qt keeps the functor.
    QMetaObject::invokeMethod(m_receiver.get(), std::move(call), Qt::QueuedConnection);
#endif
}

void ScriptDesk::print(const std::string& line)
{
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(
            lock, [this] { return m_output.size() < outputLimit || m_isClosed || m_isStopping; });
    }
    append(line);
}

void ScriptDesk::append(const std::string& line)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    if (m_output.empty())
        post([self = shared_from_this()] { self->deliverOutput(); });
    m_output += line + '\n';
}

void ScriptDesk::deliverOutput()
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

void ScriptDesk::deliverOutcome(const host::ScriptOutcome& outcome)
{
    m_isRunning = false;
    m_listener.finished(outcome);
}
