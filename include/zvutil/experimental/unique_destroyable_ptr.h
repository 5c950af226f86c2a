#pragma once

#include <cstddef>
#include <utility>

namespace zvutil::experimental {

/// Owns an object that frees itself: `destroy`, a virtual operation of `T`, is called and never the
/// delete operator, so that the object is freed by the library that has made it.
///
/// One pointer wide. It can be moved, which leaves null behind, but not copied. `T` must be complete
/// only where an object is destroyed.
template <typename T, typename Enable = void>
class unique_destroyable_ptr
{
public:
    /// Holds null.
    unique_destroyable_ptr() noexcept = default;
    unique_destroyable_ptr(std::nullptr_t) noexcept { }
    /// Takes \p object over, which may be null.
    explicit unique_destroyable_ptr(T* object) noexcept
        : m_object(object)
    {
    }

    unique_destroyable_ptr(unique_destroyable_ptr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }

    /// Destroys the object held before, after the other's has been taken over.
    unique_destroyable_ptr& operator=(unique_destroyable_ptr&& other) noexcept
    {
        if (this != &other)
            reset(std::exchange(other.m_object, nullptr));
        return *this;
    }

    unique_destroyable_ptr(const unique_destroyable_ptr&) = delete;
    unique_destroyable_ptr& operator=(const unique_destroyable_ptr&) = delete;

    ~unique_destroyable_ptr() { reset(); }

    /// Takes \p object over and then destroys the one held before, if any.
    void reset(T* object = nullptr) noexcept
    {
        T* const previous = std::exchange(m_object, object);
        if (previous)
            previous->destroy();
    }

    T* get() const noexcept { return m_object; }
    /// Not to be called on null, like `operator*`: there is no test.
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    T* m_object = nullptr;
};

} // namespace zvutil::experimental
