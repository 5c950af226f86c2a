#include "impl/styles/style_xml.h"

namespace libzvutil::impl {

void write_brushes(zvutil::experimental::xml::basic_abstract_xml_element_writer<char>& parent,
                   const std::vector<ZvNamedColour>& brushes)
{
    const xml_element_writer list = parent.child("Brushes");
    for (const ZvNamedColour& brush : brushes)
        write_colour(*list, "Brush", brush);
}

void write_colour(zvutil::experimental::xml::basic_abstract_xml_element_writer<char>& parent,
                  const char* element, const ZvNamedColour& colour)
{
    const xml_element_writer entry = parent.child(element);
    entry->attribute("name", colour.name().c_str());
    entry->attribute("colour", colour.colourString().c_str());
}

} // namespace libzvutil::impl
