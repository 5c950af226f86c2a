#pragma once

namespace zvutil::details {

/// Deletes a `QObject` by the event loop of the thread that it lives on, whichever thread lets go.
struct delete_later
{
    template <typename T>
    void operator()(T* object) const
    {
        object->deleteLater();
    }
};

} // namespace zvutil::details
