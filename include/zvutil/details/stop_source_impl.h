#pragma once

#include <zvutil/signalling/parameterised_abstract_receiver.h>

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>

namespace zvutil::details {

/// What a `stop_source` shares with its tokens.
struct stop_source_impl : std::enable_shared_from_this<stop_source_impl>
{
    /// See `stop_source::request_stop`.
    bool request_stop()
    {
        if (!flag || flag->exchange(true))
            return false;
        // A receiver may end the source, or connect another receiver, which moves no entry.
        const std::shared_ptr<stop_source_impl> alive = weak_from_this().lock();
        const std::size_t count = receivers.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (const auto receiver = receivers[i].lock())
                receiver->receive();
        }
        return true;
    }

    bool stop_requested() const noexcept { return flag && flag->load(); }

    /// An object of its own, so that a token can read it when the source has gone.
    std::shared_ptr<std::atomic<bool>> flag = std::make_shared<std::atomic<bool>>(false);
    /// In the order of registration. Nothing is ever removed, not even what has expired.
    std::deque<std::weak_ptr<signalling::parameterised_abstract_receiver<>>> receivers;
};

} // namespace zvutil::details
