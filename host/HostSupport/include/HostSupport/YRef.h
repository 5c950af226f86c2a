#pragma once

#include <memory>
#include <utility>

/// A counted reference to an object of the host. The last one deletes the object through its
/// virtual destructor. Copies may live on different threads.
template <typename T>
class YRef
{
public:
    YRef() noexcept = default;

    /// Takes ownership of \p object.
    explicit YRef(std::unique_ptr<T> object)
        : m_object(std::move(object))
    {
    }

    T* get() const noexcept { return m_object.get(); }
    T& operator*() const noexcept { return *m_object; }
    T* operator->() const noexcept { return m_object.get(); }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// The number of references to the object; 0 for a null reference.
    long useCount() const noexcept { return m_object.use_count(); }

private:
    std::shared_ptr<T> m_object;
};
