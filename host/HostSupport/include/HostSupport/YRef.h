#pragma once

#include <memory>
#include <utility>

/// A counted reference to an object of the host. The last reference deletes the object through
/// its virtual destructor. Copies may live on different threads.
/// @since 0.1 @ingroup host
template <typename T>
class YRef
{
public:
    /// A null reference.
    YRef() noexcept = default;

    /// The first reference to an object.
    /// @param object owned by the references from now on; may be null
    explicit YRef(std::unique_ptr<T> object)
        : m_object(std::move(object))
    {
    }

    /// @return the object, which stays owned, or null.
    T* get() const noexcept { return m_object.get(); }
    /// @return the object; the reference must not be null.
    T& operator*() const noexcept { return *m_object; }
    /// @return the object; the reference must not be null.
    T* operator->() const noexcept { return m_object.get(); }
    /// @return whether there is an object.
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// @return the number of references to the object; 0 for a null reference.
    long useCount() const noexcept { return m_object.use_count(); }

private:
    std::shared_ptr<T> m_object;
};
