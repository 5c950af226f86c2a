#pragma once

#include <zvutil/stop_source.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace zvtest {

/// A thread that requests the stops it is handed.
class Stopper
{
public:
    Stopper()
        : m_thread([this] { run(); })
    {
    }

    ~Stopper()
    {
        push(std::nullopt);
        m_thread.join();
    }

    Stopper(const Stopper&) = delete;
    Stopper& operator=(const Stopper&) = delete;

    void stop(const zvutil::stop_source& source) { push(source); }

private:
    void push(std::optional<zvutil::stop_source> source)
    {
        const std::lock_guard lock(m_mutex);
        m_sources.push_back(std::move(source));
        m_changed.notify_one();
    }

    void run()
    {
        for (;;) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return !m_sources.empty(); });
            const std::optional<zvutil::stop_source> source = std::move(m_sources.front());
            m_sources.pop_front();
            lock.unlock();
            if (!source)
                return;
            source->request_stop();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::optional<zvutil::stop_source>> m_sources;
    std::thread m_thread;
};

} // namespace zvtest
