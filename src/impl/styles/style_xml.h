#pragma once

#include <zvutil/ZvNamedColour.h>
#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include <vector>

/// The XML elements that styles and their editors have in common.
namespace libzvutil::impl {

using xml_element_writer = zvutil::experimental::unique_destroyable_ptr<
    zvutil::experimental::xml::basic_abstract_xml_element_writer<char>, void>;

/// Writes the child "Brushes" of \p parent.
void write_brushes(zvutil::experimental::xml::basic_abstract_xml_element_writer<char>& parent,
                   const std::vector<ZvNamedColour>& brushes);

/// Writes a child \p element with name and colour, the colour without alpha.
void write_colour(zvutil::experimental::xml::basic_abstract_xml_element_writer<char>& parent,
                  const char* element, const ZvNamedColour& colour);

} // namespace libzvutil::impl
