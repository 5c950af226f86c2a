#pragma once

namespace zvutil::signalling {

/// The base of receivers, which are called when something happens. Receivers are owned by shared
/// pointers; their callers hold weak ones.
/// @since 0.1 @ingroup background
class abstract_receiver
{
public:
    /// Makes a receiver; only subclasses can call this.
    abstract_receiver() = default;
    /// Receivers are shared, not copied.
    abstract_receiver(const abstract_receiver&) = delete;
    /// Receivers are shared, not copied.
    abstract_receiver& operator=(const abstract_receiver&) = delete;
    /// Ends the registration: callers hold weak pointers only.
    virtual ~abstract_receiver() = default;
};

} // namespace zvutil::signalling
