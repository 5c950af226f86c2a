#include <zvutil/ZvEditorStyle.h>

#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include "impl/ZvEditorStyleImpl.h"
#include "impl/styles/style_xml.h"

#include <QColor>

#include <algorithm>
#include <memory>
#include <utility>

namespace libzvutil {

namespace {

template <typename Brushes>
auto find(Brushes& brushes, const char* name)
{
    return std::find_if(brushes.begin(), brushes.end(), [name](const ZvNamedColour& brush) {
        return brush.name().compare(name) == 0;
    });
}

} // namespace

ZvEditorStyle::ZvEditorStyle()
    : ZvEditorStyle("")
{
}

ZvEditorStyle::ZvEditorStyle(const char* name)
    : m_implementation(new Impl{name, {}})
{
}

ZvEditorStyle::ZvEditorStyle(const std::string& name)
    : ZvEditorStyle(name.c_str())
{
}

ZvEditorStyle::ZvEditorStyle(const ZvEditorStyle& other)
    : m_implementation(new Impl(*other.d_impl()))
{
}

ZvEditorStyle::ZvEditorStyle(ZvEditorStyle&& other) noexcept
    : m_implementation(std::exchange(other.m_implementation, nullptr))
{
}

ZvEditorStyle& ZvEditorStyle::operator=(const ZvEditorStyle& other)
{
    if (this == &other)
        return *this;
    if (!m_implementation)
        return *this = ZvEditorStyle(other);
    *d_impl() = *other.d_impl();
    return *this;
}

ZvEditorStyle& ZvEditorStyle::operator=(ZvEditorStyle&& other) noexcept
{
    ZvEditorStyle taken(std::move(other));
    std::swap(m_implementation, taken.m_implementation);
    return *this;
}

ZvEditorStyle::~ZvEditorStyle()
{
    std::default_delete<Impl>()(m_implementation);
}

const char* ZvEditorStyle::name() const
{
    return d_impl()->name.c_str();
}

QColor ZvEditorStyle::brush(const char* name) const
{
    const auto found = find(d_impl()->brushes, name);
    return found == d_impl()->brushes.end() ? QColor() : found->qColour();
}

void ZvEditorStyle::setBrush(const ZvNamedColour& brush)
{
    setBrush(ZvNamedColour(brush));
}

void ZvEditorStyle::setBrush(ZvNamedColour&& brush)
{
    const auto found = find(d_impl()->brushes, brush.name().c_str());
    if (found == d_impl()->brushes.end())
        d_impl()->brushes.push_back(std::move(brush));
    else
        *found = brush;
}

void ZvEditorStyle::setBrush(const char* name, const QColor& colour)
{
    setBrush(ZvNamedColour(name, colour));
}

void ZvEditorStyle::setBrush(const char* name, const char* colour)
{
    setBrush(ZvNamedColour(name, colour));
}

void ZvEditorStyle::write(impl::xml_element_writer element) const
{
    element->attribute("name", name());
    impl::write_brushes(*element, d_impl()->brushes);
}

ZvEditorStyle::Impl* ZvEditorStyle::d_impl()
{
    return m_implementation;
}

const ZvEditorStyle::Impl* ZvEditorStyle::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
