#pragma once

#include <zvutil/signalling/parameterised_abstract_receiver.h>

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>

namespace zvutil::details {

/// The state that a `stop_source` shares with its tokens.
struct stop_source_impl : std::enable_shared_from_this<stop_source_impl>
{
    /// See `stop_source::request_stop`.
    bool request_stop()
    {
        if (!flag || flag->exchange(true))
            return false;
        // A receiver may destroy the source, or connect another receiver, which moves no entry.
        const std::shared_ptr<stop_source_impl> alive = weak_from_this().lock();
        const std::size_t count = receivers.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (const auto receiver = receivers[i].lock())
                receiver->receive();
        }
        return true;
    }

    /// See `stop_source::stop_requested`.
    bool stop_requested() const noexcept { return flag && flag->load(); }

    /// Whether the stop was requested. A separate object, so that a token can read it after the
    /// source was destroyed.
    std::shared_ptr<std::atomic<bool>> flag = std::make_shared<std::atomic<bool>>(false);
    /// The receivers in the order of their registration. None is ever removed, not even an expired
    /// one.
    std::deque<std::weak_ptr<signalling::parameterised_abstract_receiver<>>> receivers;
};

} // namespace zvutil::details
