#pragma once

#include <zvutil/experimental/xml/abstract_xml_document_reader.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>
#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include <string>

namespace zvtest {

/// A document that tells in each element which one it is, so that a mixture of two is noticed.
inline void
writeGeneration(zvutil::experimental::xml::basic_abstract_xml_document_writer<char>& writer,
                int generation)
{
    const std::string number = std::to_string(generation);
    const int count = 1 + generation % 40 * 25;
    const auto root = writer.root_element("generation");
    root->attribute("number", number.c_str());
    root->attribute("count", std::to_string(count).c_str());
    for (int i = 0; i < count; ++i) {
        const auto child = root->child("child");
        child->attribute("number", number.c_str());
        child->text("some text that lets the document grow beyond one block");
    }
    root->child("end");
}

/// The number of the document, or -1 if it isn't whole.
inline int readGeneration(zvutil::experimental::xml::abstract_xml_document_reader& reader)
{
    const auto root = reader.root_element();
    if (!root || std::string(root->name()) != "generation")
        return -1;
    const std::string number = root->attribute("number");
    int count = 0;
    while (const auto child = root->next_child()) {
        if (std::string(child->name()) == "end")
            return count == std::stoi(root->attribute("count")) && !root->next_child()
                ? std::stoi(number)
                : -1;
        if (child->attribute("number") != number)
            return -1;
        ++count;
    }
    return -1;
}

} // namespace zvtest
