#pragma once

#include <zvutil/experimental/xml/abstract_xml_document_reader.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zvtest {

/// A caller that does with a document what the bytes of a script tell: reads on in any element that
/// it holds, lets any of them go, in any order. What it is given is its log.
class XmlCaller
{
public:
    explicit XmlCaller(zvutil::experimental::xml::abstract_xml_document_reader& document)
        : m_document(document)
    {
    }

    /// One step. The lowest bits of \p byte tell what is done, the others which element it is done
    /// to.
    void step(std::uint8_t byte)
    {
        switch (byte % 8) {
        case 0:
            keep(m_document.root_element());
            return;
        case 1:
            keep(m_document.next_element());
            return;
        default:
            if (!m_elements.empty())
                stepOn((byte / 8U) % m_elements.size(), byte % 8);
        }
    }

    const std::string& log() const { return m_log; }

private:
    using Element = zvutil::experimental::unique_destroyable_ptr<
        zvutil::experimental::xml::abstract_xml_element_reader>;

    void stepOn(std::size_t index, unsigned action)
    {
        try {
            switch (action) {
            case 2:
            case 3:
                keep(m_elements[index]->next_child());
                return;
            case 4:
                // The last one, so that a document is also read in depth.
                keep(m_elements.back()->next_child());
                return;
            case 5:
                m_log += " text:";
                m_log += m_elements[index]->text();
                return;
            case 6:
                m_elements.erase(m_elements.begin() + static_cast<std::ptrdiff_t>(index));
                m_log += " gone";
                return;
            default:
                describe(*m_elements[index]);
            }
        } catch (const zvutil::experimental::xml::null_element_xml_exception&) {
            m_log += " null";
        }
    }

    void keep(Element element)
    {
        if (element) {
            describe(*element);
            m_elements.push_back(std::move(element));
        } else {
            m_log += " none";
        }
    }

    void describe(const zvutil::experimental::xml::abstract_xml_element_reader& element)
    {
        m_log += ' ';
        m_log += element.name();
        for (const char* const name : {"x", "y", "z"}) {
            try {
                m_log += '|';
                m_log += element.attribute(name);
            } catch (const zvutil::experimental::xml::attribute_not_found_xml_exception& error) {
                m_log += '!';
                m_log += error.what();
            }
        }
    }

    zvutil::experimental::xml::abstract_xml_document_reader& m_document;
    std::vector<Element> m_elements;
    std::string m_log;
};

} // namespace zvtest
