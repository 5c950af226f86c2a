#pragma once

namespace zvutil::details {

/// The deleter of a smart pointer to a `QObject` that is deleted by the event loop of its own thread,
/// whichever thread releases the pointer.
struct delete_later
{
    template <typename T>
    /// Posts the deletion of \p object, which must not be null.
    void operator()(T* object) const
    {
        object->deleteLater();
    }
};

} // namespace zvutil::details
