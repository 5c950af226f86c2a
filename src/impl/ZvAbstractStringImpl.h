#pragma once

#include <zvutil/ZvAbstractString.h>

#include <cstddef>

namespace libzvutil {

/// The text of a handle.
class ZVUTIL_NO_EXPORT ZvAbstractString::Impl
{
public:
    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    virtual ~Impl() = default;

    virtual void resize(std::size_t size) = 0;
    virtual std::size_t size() const = 0;
};

} // namespace libzvutil
