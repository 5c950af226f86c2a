#pragma once

#include <zvutil/details/stop_source_impl.h>
#include <zvutil/stop_token.h>

#include <memory>

namespace zvutil {

/// Requests that work stops, once. Nothing is forced: the work polls its `stop_token`, or is called
/// through it.
///
/// Copies are the same source, which ends with the last of them. A source may be used on any thread,
/// each object by one thread at a time.
///
/// @code{.cpp}
/// #include <cassert>
/// #include <thread>
///
/// const zvutil::stop_source source;
/// std::thread worker([token = source.get_token()] {
///     while (!token.stop_requested())
///         std::this_thread::yield(); // or one step of the work
/// });
/// const bool isFirst = source.request_stop();
/// worker.join();
/// assert(isFirst);
/// assert(source.stop_requested());
/// @endcode
/// @since 0.1 @ingroup background
class stop_source
{
public:
    /// A new source, without a stop requested.
    stop_source()
        : m_impl(std::make_shared<details::stop_source_impl>())
    {
    }

    /// @return a token for the work that is to stop.
    [[nodiscard]] stop_token get_token() const { return stop_token(m_impl); }

    /// Requests the stop. The first one calls, on this thread and in the order of their
    /// connection, all receivers that are connected now and still exist when their turn comes.
    /// Later calls do nothing.
    ///
    /// A receiver may connect further ones, which aren't called any more, and destroy receivers and
    /// the source. An exception of a receiver is passed on and leaves the later receivers uncalled.
    /// @return true for the first call, false for all others: however many threads call, exactly
    /// one of them gets true
    bool request_stop() const { return m_impl->request_stop(); }

    /// @return whether `request_stop` was called on this source or a copy. Takes no lock.
    bool stop_requested() const noexcept { return m_impl->stop_requested(); }

private:
    std::shared_ptr<details::stop_source_impl> m_impl;
};

static_assert(sizeof(stop_source) == sizeof(std::shared_ptr<details::stop_source_impl>));

} // namespace zvutil
