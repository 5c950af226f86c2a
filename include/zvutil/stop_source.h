#pragma once

#include <zvutil/details/stop_source_impl.h>
#include <zvutil/stop_token.h>

#include <memory>

namespace zvutil {

/// Whoever holds it can ask work to stop, once. Nothing is forced: the work looks at its
/// `stop_token`, or is called through it.
///
/// Copies are the same source, which goes with the last of them. It is used on any thread, each
/// object by one thread at a time.
///
/// @code{.cpp}
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
class stop_source
{
public:
    /// A source of its own that nobody has asked to stop.
    stop_source()
        : m_impl(std::make_shared<details::stop_source_impl>())
    {
    }

    /// A token for those that are to stop.
    [[nodiscard]] stop_token get_token() const { return stop_token(m_impl); }

    /// Asks to stop. Returns true the first time; then it also calls, on this thread and in the
    /// order in which they were connected, all receivers that are connected now and alive when
    /// their turn comes. Later calls return false and do nothing. However many threads call,
    /// exactly one of them gets true.
    ///
    /// A receiver may connect further ones, which aren't called any more, and destroy receivers and
    /// the source. What a receiver throws comes out here and leaves those behind it uncalled.
    bool request_stop() const { return m_impl->request_stop(); }

    bool stop_requested() const noexcept { return m_impl->stop_requested(); }

private:
    std::shared_ptr<details::stop_source_impl> m_impl;
};

static_assert(sizeof(stop_source) == sizeof(std::shared_ptr<details::stop_source_impl>));

} // namespace zvutil
