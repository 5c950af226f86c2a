#include <zvutil/ZvUUID.h>

#include <memory>

namespace zvutil {

struct ZvUUID::ZvUUIDImpl
{
    uuid id;
};

ZvUUID::ZvUUID()
    : m_impl(std::make_unique<ZvUUIDImpl>())
{
}

ZvUUID::ZvUUID(const char* text)
    : m_impl(std::make_unique<ZvUUIDImpl>(ZvUUIDImpl{uuid(text)}))
{
}

ZvUUID::ZvUUID(const std::string& text)
    : ZvUUID(text.c_str())
{
}

ZvUUID::ZvUUID(const ZvBasicString<char>& text)
    : ZvUUID(text.c_str())
{
}

ZvUUID::ZvUUID(const uuid& id)
    : ZvUUID(id.c_str())
{
}

ZvUUID::ZvUUID(const ZvUUID& other)
    : m_impl(std::make_unique<ZvUUIDImpl>(other.m_impl.impl()))
{
}

ZvUUID::ZvUUID(ZvUUID&& other) noexcept = default;

ZvUUID& ZvUUID::operator=(const ZvUUID& other)
{
    if (this == &other)
        return *this;
    if (!has_impl(m_impl))
        return *this = ZvUUID(other);
    m_impl.impl() = other.m_impl.impl();
    return *this;
}

ZvUUID& ZvUUID::operator=(ZvUUID&& other) noexcept = default;

ZvUUID& ZvUUID::operator=(const uuid& id)
{
    return *this = ZvUUID(id);
}

ZvUUID::~ZvUUID() = default;

bool ZvUUID::operator==(const ZvUUID& other) const
{
    return m_impl.impl().id == other.m_impl.impl().id;
}

bool ZvUUID::operator!=(const ZvUUID& other) const
{
    return !(*this == other);
}

bool ZvUUID::operator<(const ZvUUID& other) const
{
    return m_impl.impl().id.text() < other.m_impl.impl().id.text();
}

const char* ZvUUID::c_str() const
{
    return m_impl.impl().id.c_str();
}

ZvBasicString<char> ZvUUID::toString() const
{
    return c_str();
}

uuid ZvUUID::toUUID() const
{
    return uuid(c_str());
}

} // namespace zvutil
