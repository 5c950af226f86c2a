#pragma once

#include <zvutil/signalling/abstract_receiver.h>

namespace zvutil::signalling {

/// A receiver that is called with `Args`.
/// @since 0.1 @ingroup background
template <typename... Args>
class parameterised_abstract_receiver : public abstract_receiver
{
public:
    /// Runs on the caller's thread.
    /// @param args what the caller reports
    virtual void receive(Args... args) = 0;
};

} // namespace zvutil::signalling
