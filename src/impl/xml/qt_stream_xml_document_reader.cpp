#include "impl/xml/qt_stream_xml_document_reader.h"

#include "impl/xml/qt_stream_xml_element_reader.h"
#include "impl/xml/stream_on_device.h"

#include <utility>

namespace zvutil::experimental::xml {

namespace {

std::shared_ptr<QXmlStreamReader> streamOn(std::shared_ptr<QIODevice>&& device)
{
    using Parts = zvutil::impl::stream_on_device<QXmlStreamReader>;
    const auto parts = std::make_shared<Parts>(std::move(device));
    return {parts, &parts->stream};
}

/// Whether reading can't even begin. Qt would notice as well, but warn.
bool isClosed(const QXmlStreamReader& stream)
{
    const QIODevice* const device = stream.device();
    return stream.tokenType() == QXmlStreamReader::NoToken && device && !device->isReadable();
}

} // namespace

qt_stream_xml_document_reader::qt_stream_xml_document_reader(QIODevice* device)
    : qt_stream_xml_document_reader(zvutil::impl::borrowed(device))
{
}

qt_stream_xml_document_reader::qt_stream_xml_document_reader(std::shared_ptr<QIODevice> device)
    : m_stream(streamOn(std::move(device)))
{
}

qt_stream_xml_document_reader::~qt_stream_xml_document_reader() = default;

unique_destroyable_ptr<abstract_xml_element_reader> qt_stream_xml_document_reader::next_element()
{
    if (isClosed(*m_stream))
        return nullptr;
    bool found = false;
    while (!found && !m_stream->atEnd())
        found = m_stream->readNext() == QXmlStreamReader::StartElement;
    if (m_stream->atEnd())
        return nullptr;
    return unique_destroyable_ptr<abstract_xml_element_reader>(
        std::make_unique<qt_stream_xml_element_reader>(m_stream).release());
}

unique_destroyable_ptr<abstract_xml_element_reader> qt_stream_xml_document_reader::root_element()
{
    switch (m_stream->tokenType()) {
    case QXmlStreamReader::NoToken:
    case QXmlStreamReader::StartDocument:
        return next_element();
    default:
        return nullptr;
    }
}

} // namespace zvutil::experimental::xml
