#include <zvutil/ZvAbstractString.h>

#include "impl/ZvAbstractStringImpl.h"

namespace libzvutil {

ZvAbstractString::ZvAbstractString(Impl* implementation)
    : m_implementation(implementation)
{
}

ZvAbstractString::~ZvAbstractString()
{
    delete m_implementation;
}

void ZvAbstractString::resize(std::size_t size)
{
    impl().resize(size);
}

std::size_t ZvAbstractString::size() const
{
    return impl().size();
}

ZvAbstractString::Impl& ZvAbstractString::impl()
{
    return *d_impl();
}

const ZvAbstractString::Impl& ZvAbstractString::impl() const
{
    return *d_impl();
}

ZvAbstractString::Impl* ZvAbstractString::d_impl()
{
    return m_implementation;
}

const ZvAbstractString::Impl* ZvAbstractString::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
