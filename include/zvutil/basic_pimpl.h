#pragma once

#include <memory>
#include <utility>

namespace zvutil {

/// Owns the hidden implementation of a handle.
///
/// The implementation is built first and handed in, so that nothing leaks if that throws:
/// @code{.cpp}
/// class Counter
/// {
/// public:
///     Counter();
///     int next();
///
/// private:
///     struct CounterImpl;
///
///     zvutil::basic_pimpl<CounterImpl> m_impl;
/// };
///
/// struct Counter::CounterImpl
/// {
///     int value = 0;
/// };
///
/// Counter::Counter()
///     : m_impl(std::make_unique<CounterImpl>())
/// {
/// }
///
/// int Counter::next()
/// {
///     return ++m_impl.impl().value;
/// }
/// @endcode
/// A `basic_pimpl` can be moved but not copied: a handle that can be copied builds a new
/// implementation from the other's, so that copies never share anything. A moved-from object holds
/// null; it may only be destroyed, move-assigned to or passed to `has_impl`.
///
/// Two threads may use two objects at once. `T` must be complete where an object is made or
/// destroyed.
/// @since 0.1 @ingroup basics
template <typename T>
class basic_pimpl
{
public:
    /// A handle's first implementation.
    /// @param implementation owned from now on; must not be null
    explicit basic_pimpl(std::unique_ptr<T>&& implementation) noexcept
        : m_implementation(implementation.release())
    {
    }

    /// Takes the implementation over.
    /// @param other holds null afterwards
    basic_pimpl(basic_pimpl&& other) noexcept
        : m_implementation(std::exchange(other.m_implementation, nullptr))
    {
    }

    /// Destroys the implementation held before, after the other's has been taken over.
    /// @param other holds null afterwards
    basic_pimpl& operator=(basic_pimpl&& other) noexcept
    {
        if (this != &other)
            destroy(
                std::exchange(m_implementation, std::exchange(other.m_implementation, nullptr)));
        return *this;
    }

    /// A handle that can be copied builds the new implementation itself.
    basic_pimpl(const basic_pimpl&) = delete;
    /// A handle that can be copied assigns to the implementation itself.
    basic_pimpl& operator=(const basic_pimpl&) = delete;

    /// Destroys the implementation, if any.
    virtual ~basic_pimpl() { destroy(m_implementation); }

    /// @return the implementation. The object must not have been moved from: there is no test for
    /// null.
    T& impl() noexcept { return *m_implementation; }
    /// @return the same for a constant handle.
    const T& impl() const noexcept { return *m_implementation; }

    /// @return whether \p holder holds an implementation, that is, hasn't been moved from. A handle
    /// whose copy assignment writes into its implementation checks this first.
    /// @param holder may have been moved from
    friend bool has_impl(const basic_pimpl& holder) noexcept
    {
        return holder.m_implementation != nullptr;
    }

private:
    static void destroy(T* implementation) noexcept { std::default_delete<T>()(implementation); }

    T* m_implementation;
};

} // namespace zvutil
