#include "schematic/SchematicSaveFile.h"

#include "documents/xml_text.h"

namespace workbench {

namespace {

using Element = zvutil::experimental::xml::basic_abstract_xml_element_writer<char>;

void setAttribute(Element& element, const char* name, const QString& value)
{
    element.attribute(name, value.toUtf8().constData());
}

void setAttribute(Element& element, const char* name, int value)
{
    setAttribute(element, name, QString::number(value));
}

void setPosition(Element& element, const QPoint& position)
{
    setAttribute(element, "x", position.x());
    setAttribute(element, "y", position.y());
}

void writeSymbol(Element& root, const Symbol& symbol)
{
    requireWritable(symbol.reference, [] { return Schematic::tr("The reference of a symbol"); });
    requireWritable(symbol.value,
                    [&] { return Schematic::tr("The value of %1").arg(symbol.reference); });
    const auto element = root.child("symbol");
    setAttribute(*element, "kind", kindName(symbol.kind));
    setAttribute(*element, "ref", symbol.reference);
    setAttribute(*element, "value", symbol.value);
    setPosition(*element, symbol.position);
    setAttribute(*element, "rotation", symbol.rotation);
}

void writeWire(Element& root, const Wire& wire)
{
    const auto element = root.child("wire");
    // The count reveals a file that breaks off within a wire, which would otherwise be read as a
    // shorter one.
    setAttribute(*element, "points", wire.points.size());
    for (const QPoint& point : wire.points)
        setPosition(*element->child("point"), point);
}

} // namespace

SchematicSaveFile::SchematicSaveFile(const zvutil::ZvFilePath& path)
    : ZvBasicXMLSaveFile(path)
{
}

bool SchematicSaveFile::save(const Schematic& schematic, const Progress& progress)
{
    write(schematic, progress);
    return commit();
}

void SchematicSaveFile::write(const Schematic& schematic, const Progress& progress)
{
    const auto root = writer().root_element("schematic");
    root->attribute("version", "1");
    const int symbols = schematic.symbols.size();
    const int wires = schematic.wires.size();
    setAttribute(*root, "symbols", symbols);
    setAttribute(*root, "wires", wires);
    for (int i = 0; i < symbols; ++i) {
        writeSymbol(*root, schematic.symbols.at(i));
        report(progress, i, symbols + wires);
    }
    for (int i = 0; i < wires; ++i) {
        writeWire(*root, schematic.wires.at(i));
        report(progress, symbols + i, symbols + wires);
    }
}

} // namespace workbench
