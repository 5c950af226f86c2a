#pragma once

#include <zvutil/experimental/xml/abstract_xml_document_reader.h>

#include <QXmlStreamReader>

#include <memory>

class QIODevice;

namespace zvutil::experimental::xml {

/// A document on a stream that all its element readers share.
class qt_stream_xml_document_reader : public abstract_xml_document_reader
{
public:
    /// Reads from \p device, which must outlive this object and all element readers.
    explicit qt_stream_xml_document_reader(QIODevice* device);
    ~qt_stream_xml_document_reader() override;

    unique_destroyable_ptr<abstract_xml_element_reader> next_element() override;
    unique_destroyable_ptr<abstract_xml_element_reader> root_element() override;

protected:
    /// Shares \p device with the stream.
    explicit qt_stream_xml_document_reader(std::shared_ptr<QIODevice> device);

private:
    std::shared_ptr<QXmlStreamReader> m_stream;
};

} // namespace zvutil::experimental::xml
