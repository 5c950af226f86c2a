#pragma once

#include <zvutil/details/stop_source_impl.h>
#include <zvutil/signalling/parameterised_abstract_receiver.h>

#include <atomic>
#include <memory>
#include <utility>

namespace zvutil {

/// Reports whether a stop was requested from the `stop_source` that the token comes from. The token
/// keeps the source's answer, but not the source, alive.
///
/// Tokens may be copied and used on any thread, each object by one thread at a time.
/// @since 0.1 @ingroup background
class stop_token
{
public:
    /// A token without a source, which never reports a stop and accepts no receiver.
    stop_token() noexcept = default;

    /// @return whether the stop was requested, also from a source that was destroyed since. Takes
    /// no lock and never waits.
    bool stop_requested() const noexcept { return m_flag && m_flag->load(); }

    /// Registers a receiver, which the first `stop_source::request_stop` that begins afterwards
    /// calls on its own thread. A stop that was requested before, or is just being requested,
    /// doesn't call it: a caller that must not miss one connects first and then checks
    /// `stop_requested`.
    ///
    /// The source keeps an entry of a few words for the receiver until the source is destroyed, so
    /// repeated connections to a long-lived source cost memory.
    ///
    /// Any thread may call this, but no two may connect to one source at once, and none may connect
    /// while another requests the stop.
    /// @param receiver must not be null; destroyed if the source was destroyed
    /// @return the only strong reference to the receiver, which stays connected as long as the
    /// caller keeps it; null if the source was destroyed
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
