#pragma once

#include <zvutil/signalling/parameterised_abstract_receiver.h>

#include <utility>

namespace zvutil::signalling {

/// A receiver that calls a callable, which it holds by value.
/// @since 0.1 @ingroup background
template <typename F, typename... Args>
class basic_receiver : public parameterised_abstract_receiver<Args...>
{
public:
    /// A receiver for one callable.
    /// @param callable moved in
    explicit basic_receiver(F callable)
        : m_callable(std::move(callable))
    {
    }

    /// Calls the callable; throws what that throws.
    /// @param args passed on
    void receive(Args... args) override { m_callable(std::forward<Args>(args)...); }

private:
    F m_callable;
};

} // namespace zvutil::signalling
