#include "schematic/SchematicReadFile.h"

#include "documents/xml_text.h"

namespace workbench {

namespace {

/// Returns the next child. Throws `FileError` with the text \p end if there is none, and with
/// another if it isn't called \p name.
auto nextChild(XmlElement& parent, const char* name, const QString& end)
{
    auto child = parent.next_child();
    if (!child)
        throw FileError(end);
    if (!isElement(child.get(), name))
        throw FileError(Schematic::tr("Unexpected element “%1” (expected “%2”).")
                            .arg(QString::fromUtf8(child->name()), QString::fromUtf8(name)));
    return child;
}

QPoint placeOf(const XmlElement& element)
{
    return {numberAttribute(element, "x", -farthestStep, farthestStep),
            numberAttribute(element, "y", -farthestStep, farthestStep)};
}

Symbol readSymbol(const XmlElement& element)
{
    Symbol symbol;
    const QString kind = textAttribute(element, "kind");
    if (!kindOfName(kind, symbol.kind))
        throw FileError(Schematic::tr("Unknown symbol kind “%1”.").arg(kind.left(40)));
    symbol.reference = textAttribute(element, "ref");
    symbol.value = textAttribute(element, "value");
    symbol.position = placeOf(element);
    symbol.rotation = numberAttribute(element, "rotation", 0, 270);
    if (symbol.rotation % 90 != 0)
        throw FileError(
            Schematic::tr("A symbol is rotated by %1 degrees; expected a multiple of 90.")
                .arg(symbol.rotation));
    return symbol;
}

Wire readWire(XmlElement& element, const QString& end)
{
    Wire wire;
    const int count = numberAttribute(element, "points", 2, maxWirePoints);
    for (int i = 0; i < count; ++i)
        wire.points.append(placeOf(*nextChild(element, "point", end)));
    if (element.next_child())
        throw FileError(Schematic::tr("A wire contains more points than it declares."));
    const QString fault = wireFault(wire.points);
    if (!fault.isEmpty())
        throw FileError(fault);
    return wire;
}

} // namespace

SchematicReadFile::SchematicReadFile(const zvutil::ZvFilePath& path)
    : ZvXMLReadFile(path)
{
}

Schematic SchematicReadFile::read(const Progress& progress)
{
    const auto root = reader().root_element();
    requireRoot(root.get(), "schematic", Schematic::tr("schematic"));
    const int symbols = numberAttribute(*root, "symbols", 0, maxSymbols);
    const int wires = numberAttribute(*root, "wires", 0, maxWires);
    Schematic schematic;
    // The counts are only what the file claims, so nothing is reserved: a damaged file may claim
    // far more than it has.
    for (int i = 0; i < symbols; ++i) {
        const QString end =
            Schematic::tr("The file ends after symbol %1 of %2.").arg(i).arg(symbols);
        schematic.symbols.append(readSymbol(*nextChild(*root, "symbol", end)));
        report(progress, i, symbols + wires);
    }
    for (int i = 0; i < wires; ++i) {
        const QString end = Schematic::tr("The file ends after wire %1 of %2.").arg(i).arg(wires);
        schematic.wires.append(readWire(*nextChild(*root, "wire", end), end));
        report(progress, symbols + i, symbols + wires);
    }
    if (root->next_child())
        throw FileError(Schematic::tr("The file contains more symbols or wires than it declares."));
    return schematic;
}

} // namespace workbench
