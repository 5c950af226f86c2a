#pragma once

#include <zvutil/details/stop_source_impl.h>
#include <zvutil/signalling/parameterised_abstract_receiver.h>

#include <atomic>
#include <memory>
#include <utility>

namespace zvutil {

/// Tells whether the `stop_source` that it comes from was asked to stop. It keeps the source's
/// answer, but not the source, alive.
///
/// Tokens are copied freely and used on any thread, each object by one thread at a time.
class stop_token
{
public:
    /// Belongs to no source: it never reports a stop and accepts no receiver.
    stop_token() noexcept = default;

    /// Also tells the last answer of a source that has gone. Takes no lock and never waits.
    bool stop_requested() const noexcept { return m_flag && m_flag->load(); }

    /// Has \p receiver called by the first `stop_source::request_stop` that begins afterwards, on
    /// the thread that calls that. A stop that was requested before, or is just being requested,
    /// doesn't reach it: who must not miss one connects first and asks `stop_requested` then.
    ///
    /// The receiver stays connected for as long as the caller keeps what is returned, which is the
    /// only strong reference to it. The source keeps an entry of a few words for it until it goes
    /// itself, so connecting over and over to a source that stays costs memory.
    ///
    /// If there is no source any more, destroys \p receiver and returns null.
    ///
    /// Any thread, but no two threads may connect to one source at once, and none may connect while
    /// another requests the stop.
    [[nodiscard]] std::shared_ptr<signalling::parameterised_abstract_receiver<>>
    connect_receiver(std::unique_ptr<signalling::parameterised_abstract_receiver<>> receiver) const
    {
        const std::shared_ptr<details::stop_source_impl> source = m_source.lock();
        if (!source)
            return nullptr;
        std::shared_ptr<signalling::parameterised_abstract_receiver<>> registration =
            std::move(receiver);
        source->receivers.push_back(registration);
        return registration;
    }

private:
    friend class stop_source;

    explicit stop_token(const std::shared_ptr<details::stop_source_impl>& source)
        : m_flag(source->flag)
        , m_source(source)
    {
    }

    std::shared_ptr<std::atomic<bool>> m_flag;
    std::weak_ptr<details::stop_source_impl> m_source;
};

static_assert(sizeof(stop_token)
              == sizeof(std::shared_ptr<std::atomic<bool>>)
                  + sizeof(std::weak_ptr<details::stop_source_impl>));

} // namespace zvutil
