#pragma once

#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include <QXmlStreamWriter>

#include <memory>
#include <string>

namespace zvutil::experimental::xml {

/// An element on a stream, which keeps track of the open elements and the next end tag.
template <typename C>
class basic_qt_stream_xml_element_writer final : public basic_abstract_xml_element_writer<C>
{
public:
    /// Writes the start tag.
    basic_qt_stream_xml_element_writer(const std::basic_string<C>& name,
                                       std::shared_ptr<QXmlStreamWriter> stream);
    /// Writes the end tag of the innermost open element.
    ~basic_qt_stream_xml_element_writer() override;

    void destroy() override;
    unique_destroyable_ptr<basic_abstract_xml_element_writer<C>> child(const C* name) override;
    void attribute(const C* name, const C* value, int length) override;
    void attribute(const C* name, const C* value) override;
    void text(const C* text) override;

private:
    std::shared_ptr<QXmlStreamWriter> m_stream;
};

extern template class basic_qt_stream_xml_element_writer<char>;
extern template class basic_qt_stream_xml_element_writer<char16_t>;
extern template class basic_qt_stream_xml_element_writer<char32_t>;
extern template class basic_qt_stream_xml_element_writer<wchar_t>;

} // namespace zvutil::experimental::xml
