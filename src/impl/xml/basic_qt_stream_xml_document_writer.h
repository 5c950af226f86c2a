#pragma once

#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>

#include <QXmlStreamWriter>

#include <memory>

class QIODevice;

namespace zvutil::experimental::xml {

/// A document on a stream, which all its element writers share with it.
template <typename C>
class basic_qt_stream_xml_document_writer : public basic_abstract_xml_document_writer<C>
{
public:
    /// Writes the XML declaration. \p device has to live as long as this object and all element
    /// writers.
    explicit basic_qt_stream_xml_document_writer(QIODevice* device);
    /// Writes all end tags that are missing and a line break, unless the device has been closed.
    ~basic_qt_stream_xml_document_writer() override;

    unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>
    root_element(const C* name) override;

    /// Does nothing: what has been written to a device stays.
    void cancel_writing() override;

protected:
    /// The stream shares \p device.
    explicit basic_qt_stream_xml_document_writer(std::shared_ptr<QIODevice> device);

private:
    std::shared_ptr<QXmlStreamWriter> m_stream;
};

extern template class basic_qt_stream_xml_document_writer<char>;
extern template class basic_qt_stream_xml_document_writer<char16_t>;
extern template class basic_qt_stream_xml_document_writer<char32_t>;
extern template class basic_qt_stream_xml_document_writer<wchar_t>;

} // namespace zvutil::experimental::xml
