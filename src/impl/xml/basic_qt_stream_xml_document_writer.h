#pragma once

#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>

#include <QXmlStreamWriter>

#include <memory>

class QIODevice;

namespace zvutil::experimental::xml {

/// A document on a stream that all its element writers share.
template <typename C>
class basic_qt_stream_xml_document_writer : public basic_abstract_xml_document_writer<C>
{
public:
    /// Writes the XML declaration. \p device must outlive this object and all element writers.
    explicit basic_qt_stream_xml_document_writer(QIODevice* device);
    /// Writes all missing end tags and a line break, unless the device has been closed.
    ~basic_qt_stream_xml_document_writer() override;

    unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>
    root_element(const C* name) override;

    /// Does nothing: a device keeps what was written.
    void cancel_writing() override;

protected:
    /// Shares \p device with the stream.
    explicit basic_qt_stream_xml_document_writer(std::shared_ptr<QIODevice> device);

private:
    std::shared_ptr<QXmlStreamWriter> m_stream;
};

extern template class basic_qt_stream_xml_document_writer<char>;
extern template class basic_qt_stream_xml_document_writer<char16_t>;
extern template class basic_qt_stream_xml_document_writer<char32_t>;
extern template class basic_qt_stream_xml_document_writer<wchar_t>;

} // namespace zvutil::experimental::xml
