#pragma once

#include <zvutil/experimental/xml/abstract_xml_element_reader.h>

#include <QXmlStreamReader>

#include <memory>

namespace zvutil::experimental::xml {

/// An element on a stream that its document and all other elements share.
class qt_stream_xml_element_reader final : public abstract_xml_element_reader
{
public:
    /// Reads the element whose start tag \p stream stands on, which isn't checked; throws
    /// `xml_exception` if \p stream is null.
    explicit qt_stream_xml_element_reader(std::shared_ptr<QXmlStreamReader> stream);
    ~qt_stream_xml_element_reader() override;

    void destroy() override;
    const char* name() const override;
    const char* attribute(const char* name) const override;
    const char* text() override;
    unique_destroyable_ptr<abstract_xml_element_reader> next_child() override;

private:
    struct impl;

    // A shared pointer, so that a parent can refer weakly to its child.
    std::shared_ptr<impl> m_d;
};

} // namespace zvutil::experimental::xml
