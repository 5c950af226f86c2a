#include "impl/xml/basic_qt_stream_xml_element_writer.h"

#include "impl/xml/stream_on_device.h"
#include "impl/xml/xml_text.h"

#include <utility>

namespace zvutil::experimental::xml {

using zvutil::impl::xml_name;
using zvutil::impl::xml_text;

template <typename C>
basic_qt_stream_xml_element_writer<C>::basic_qt_stream_xml_element_writer(
    const std::basic_string<C>& name, std::shared_ptr<QXmlStreamWriter> stream)
    : m_stream(std::move(stream))
{
    m_stream->writeStartElement(xml_name(name));
}

template <typename C>
basic_qt_stream_xml_element_writer<C>::~basic_qt_stream_xml_element_writer()
{
    zvutil::impl::write_end(*m_stream, [this] { m_stream->writeEndElement(); });
}

template <typename C>
void basic_qt_stream_xml_element_writer<C>::destroy()
{
    delete this;
}

template <typename C>
unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>
basic_qt_stream_xml_element_writer<C>::child(const C* name)
{
    return unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>(
        std::make_unique<basic_qt_stream_xml_element_writer>(name, m_stream).release());
}

template <typename C>
void basic_qt_stream_xml_element_writer<C>::attribute(const C* name, const C* value, int length)
{
    const QString text = xml_text(value, length);
    m_stream->writeAttribute(xml_text(name), text);
}

template <typename C>
void basic_qt_stream_xml_element_writer<C>::attribute(const C* name, const C* value)
{
    const QString text = xml_text(value);
    m_stream->writeAttribute(xml_text(name), text);
}

template <typename C>
void basic_qt_stream_xml_element_writer<C>::text(const C* text)
{
    m_stream->writeCharacters(xml_text(text));
}

template class basic_qt_stream_xml_element_writer<char>;
template class basic_qt_stream_xml_element_writer<char16_t>;
template class basic_qt_stream_xml_element_writer<char32_t>;
template class basic_qt_stream_xml_element_writer<wchar_t>;

} // namespace zvutil::experimental::xml
