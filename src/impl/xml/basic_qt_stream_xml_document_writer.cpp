#include "impl/xml/basic_qt_stream_xml_document_writer.h"

#include "impl/xml/basic_qt_stream_xml_element_writer.h"
#include "impl/xml/stream_on_device.h"
#include "impl/xml/utf32_device.h"
#include "impl/xml/xml_text.h"

#include <string>
#include <type_traits>
#include <utility>

namespace zvutil::experimental::xml {

namespace {

template <typename C>
std::shared_ptr<QXmlStreamWriter> stream_on(std::shared_ptr<QIODevice>&& device)
{
    using Parts = zvutil::impl::stream_on_device<QXmlStreamWriter>;
    const auto parts = std::make_shared<Parts>(std::move(device));
    QXmlStreamWriter& stream = parts->stream;
    if (zvutil::impl::xml_codec<C>)
        stream.setCodec(zvutil::impl::xml_codec<C>);
    stream.writeStartDocument();
    if constexpr (std::is_same_v<C, char32_t>) {
        // Switch after the declaration, which has no character that Qt's UTF-32 encoder fails on;
        // `utf32_device` encodes the rest.
        parts->device = std::make_shared<zvutil::impl::utf32_device>(std::move(parts->device));
        stream.setDevice(parts->device.get());
        stream.setCodec("UTF-16");
    }
    return {parts, &stream};
}

} // namespace

template <typename C>
basic_qt_stream_xml_document_writer<C>::basic_qt_stream_xml_document_writer(QIODevice* device)
    : basic_qt_stream_xml_document_writer(zvutil::impl::borrowed(device))
{
}

template <typename C>
basic_qt_stream_xml_document_writer<C>::basic_qt_stream_xml_document_writer(
    std::shared_ptr<QIODevice> device)
    : m_stream(stream_on<C>(std::move(device)))
{
}

template <typename C>
basic_qt_stream_xml_document_writer<C>::~basic_qt_stream_xml_document_writer()
{
    zvutil::impl::write_end(*m_stream, [this] { m_stream->writeEndDocument(); });
}

template <typename C>
unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>
basic_qt_stream_xml_document_writer<C>::root_element(const C* name)
{
    return unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>(
        std::make_unique<basic_qt_stream_xml_element_writer<C>>(name, m_stream).release());
}

template <typename C>
void basic_qt_stream_xml_document_writer<C>::cancel_writing()
{
}

template class basic_qt_stream_xml_document_writer<char>;
template class basic_qt_stream_xml_document_writer<char16_t>;
template class basic_qt_stream_xml_document_writer<char32_t>;
template class basic_qt_stream_xml_document_writer<wchar_t>;

} // namespace zvutil::experimental::xml
