#pragma once

#include <zvutil/signalling/abstract_receiver.h>

namespace zvutil::signalling {

/// A receiver that is told `Args`.
template <typename... Args>
class parameterised_abstract_receiver : public abstract_receiver
{
public:
    /// Runs on the thread of whoever calls.
    virtual void receive(Args... args) = 0;
};

} // namespace zvutil::signalling
