#pragma once

namespace zvutil::signalling {

/// The base of everything that can be called when something happens. Receivers are owned by shared
/// pointers; whoever calls them holds weak ones.
class abstract_receiver
{
public:
    abstract_receiver() = default;
    abstract_receiver(const abstract_receiver&) = delete;
    abstract_receiver& operator=(const abstract_receiver&) = delete;
    virtual ~abstract_receiver() = default;
};

} // namespace zvutil::signalling
