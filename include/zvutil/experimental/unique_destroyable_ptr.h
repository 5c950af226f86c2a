#pragma once

#include <cstddef>
#include <utility>

namespace zvutil::experimental {

/// Owns an object that frees itself: the pointer calls `destroy`, a virtual operation of `T`, and
/// never the delete operator, so that the library that made the object frees it.
///
/// The size is that of a plain pointer. A move leaves null, and there is no copy. `T` must be
/// complete only where an object is destroyed.
/// @since 0.1 @ingroup basics
template <typename T, typename Enable = void>
class unique_destroyable_ptr
{
public:
    /// Holds null.
    unique_destroyable_ptr() noexcept = default;
    /// Holds null.
    unique_destroyable_ptr(std::nullptr_t) noexcept { }
    /// Takes an object over.
    /// @param object owned from now on; may be null
    explicit unique_destroyable_ptr(T* object) noexcept
        : m_object(object)
    {
    }

    /// Takes the object over.
    /// @param other holds null afterwards
    unique_destroyable_ptr(unique_destroyable_ptr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }

    /// Destroys the object held before, after the other's has been taken over.
    /// @param other holds null afterwards
    unique_destroyable_ptr& operator=(unique_destroyable_ptr&& other) noexcept
    {
        if (this != &other)
            reset(std::exchange(other.m_object, nullptr));
        return *this;
    }

    /// An object has one owner.
    unique_destroyable_ptr(const unique_destroyable_ptr&) = delete;
    /// An object has one owner.
    unique_destroyable_ptr& operator=(const unique_destroyable_ptr&) = delete;

    /// Destroys the object, if any.
    ~unique_destroyable_ptr() { reset(); }

    /// Takes another object over and then destroys the one held before, if any.
    /// @param object owned from now on; may be null
    void reset(T* object = nullptr) noexcept
    {
        T* const previous = std::exchange(m_object, object);
        if (previous)
            previous->destroy();
    }

    /// @return the object, which stays owned; null if there is none.
    T* get() const noexcept { return m_object; }
    /// @return the object. The pointer must not be null: there is no test.
    T* operator->() const noexcept { return m_object; }
    /// @return the object. The pointer must not be null: there is no test.
    T& operator*() const noexcept { return *m_object; }
    /// @return whether there is an object.
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    T* m_object = nullptr;
};

} // namespace zvutil::experimental
