#include <zvutil/ZvURI.h>

#include <zvutil/ZvFilePath.h>

#include "impl/paths/file_uri.h"

#include <memory>
#include <utility>

struct ZvURI::ZvURIImpl
{
    zvutil::uri uri;
};

namespace {

/// Replaces the URI that \p holder holds; a moved-from handle gets a new implementation.
template <typename Impl>
void replace(zvutil::basic_pimpl<Impl>& holder, zvutil::uri&& uri)
{
    if (has_impl(holder))
        holder.impl().uri = std::move(uri);
    else
        holder = zvutil::basic_pimpl(std::make_unique<Impl>(Impl{std::move(uri)}));
}

} // namespace

ZvURI::ZvURI()
    : m_impl(std::make_unique<ZvURIImpl>())
{
}

ZvURI::ZvURI(const char* text)
    : ZvURI()
{
    set(text);
}

ZvURI::ZvURI(const std::string& text)
    : ZvURI(text.c_str())
{
}

ZvURI::ZvURI(const zvutil::ZvBasicString<char>& text)
    : ZvURI(text.c_str())
{
}

ZvURI::ZvURI(const zvutil::ZvFilePath& path)
    : ZvURI()
{
    set(path);
}

ZvURI::ZvURI(const zvutil::uri& uri)
    : ZvURI(uri.text().c_str())
{
}

ZvURI::ZvURI(const ZvURI& other)
    : ZvURI()
{
    set(other);
}

ZvURI::ZvURI(ZvURI&& other) noexcept = default;

ZvURI& ZvURI::operator=(const ZvURI& other)
{
    set(other);
    return *this;
}

ZvURI& ZvURI::operator=(ZvURI&& other) noexcept = default;

ZvURI::~ZvURI() = default;

void ZvURI::set(const char* text)
{
    replace(m_impl, zvutil::uri(text));
}

void ZvURI::set(const zvutil::ZvBasicString<char>& text)
{
    set(text.c_str());
}

void ZvURI::set(const zvutil::ZvFilePath& path)
{
    replace(m_impl, zvutil::uri(zvutil::impl::file_uri_text(path.c_str())));
}

void ZvURI::set(const ZvURI& other)
{
    replace(m_impl, other.toURI());
}

bool ZvURI::operator==(const ZvURI& other) const
{
    return m_impl.impl().uri.text() == other.m_impl.impl().uri.text();
}

bool ZvURI::operator!=(const ZvURI& other) const
{
    return !(*this == other);
}

const char* ZvURI::c_str() const
{
    return m_impl.impl().uri.text().c_str();
}

zvutil::ZvBasicString<char> ZvURI::toString() const
{
    return c_str();
}

zvutil::uri ZvURI::toURI() const
{
    return zvutil::uri(m_impl.impl().uri.text());
}
