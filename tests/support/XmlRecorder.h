#pragma once

#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include <string>

namespace zvtest {

/// Writes down how elements are opened, filled and closed: `<a>[b=c]<d></d></a>`.
class XmlRecorder final : public zvutil::experimental::xml::basic_abstract_xml_element_writer<char>
{
public:
    using Pointer = zvutil::experimental::unique_destroyable_ptr<
        zvutil::experimental::xml::basic_abstract_xml_element_writer<char>>;

    static Pointer open(const char* name, std::string& target)
    {
        return Pointer(new XmlRecorder(name, target));
    }

    XmlRecorder(const XmlRecorder&) = delete;
    XmlRecorder& operator=(const XmlRecorder&) = delete;
    ~XmlRecorder() override { m_target += "</" + m_name + ">"; }

    void destroy() override { delete this; }
    Pointer child(const char* name) override { return open(name, m_target); }
    void attribute(const char* name, const char* value, int length) override
    {
        m_target += std::string("[") + name + "=" + std::string(value, std::size_t(length)) + "]";
    }
    void attribute(const char* name, const char* value) override
    {
        m_target += std::string("[") + name + "=" + value + "]";
    }
    void text(const char* text) override { m_target += text; }

private:
    XmlRecorder(const char* name, std::string& target)
        : m_name(name)
        , m_target(target)
    {
        m_target += "<" + m_name + ">";
    }

    std::string m_name;
    std::string& m_target;
};

/// What \p part writes into an element of this name.
template <typename Part>
std::string written(const Part& part, const char* element)
{
    std::string text;
    part.write(XmlRecorder::open(element, text));
    return text;
}

} // namespace zvtest
