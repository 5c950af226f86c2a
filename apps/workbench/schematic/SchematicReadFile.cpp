#include "schematic/SchematicReadFile.h"

#include "documents/XmlText.h"

namespace workbench {

namespace {

/// The next child, which has to be there and a \p name.
auto nextChild(XmlElement& parent, const char* name, const QString& end)
{
    auto child = parent.next_child();
    if (!child)
        throw FileError(end);
    if (!isElement(child.get(), name))
        throw FileError(Schematic::tr("It has an element “%1” where “%2” is expected.")
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
        throw FileError(Schematic::tr("It has a symbol of the kind “%1”, which isn't known.")
                            .arg(kind.left(40)));
    symbol.reference = textAttribute(element, "ref");
    symbol.value = textAttribute(element, "value");
    symbol.position = placeOf(element);
    symbol.rotation = numberAttribute(element, "rotation", 0, 270);
    if (symbol.rotation % 90 != 0)
        throw FileError(
            Schematic::tr("It has a symbol that is rotated by %1 degrees; only quarters "
                          "of a turn are possible.")
                .arg(symbol.rotation));
    return symbol;
}

Wire readWire(XmlElement& element, const QString& end)
{
    Wire wire;
    const int count = numberAttribute(element, "points", 2, maximumWirePoints);
    for (int i = 0; i < count; ++i)
        wire.points.append(placeOf(*nextChild(element, "point", end)));
    if (element.next_child())
        throw FileError(Schematic::tr("It has a wire with more points than it tells."));
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
    const int symbols = numberAttribute(*root, "symbols", 0, maximumSymbols);
    const int wires = numberAttribute(*root, "wires", 0, maximumWires);
    Schematic schematic;
    // Nothing is reserved: the counts are only what the file claims.
    for (int i = 0; i < symbols; ++i) {
        const QString end = Schematic::tr("It ends after symbol %1 of %2, so a part of it is lost.")
                                .arg(i)
                                .arg(symbols);
        schematic.symbols.append(readSymbol(*nextChild(*root, "symbol", end)));
        report(progress, i, symbols + wires);
    }
    for (int i = 0; i < wires; ++i) {
        const QString end = Schematic::tr("It ends after wire %1 of %2, so a part of it is lost.")
                                .arg(i)
                                .arg(wires);
        schematic.wires.append(readWire(*nextChild(*root, "wire", end), end));
        report(progress, symbols + i, symbols + wires);
    }
    if (root->next_child())
        throw FileError(Schematic::tr("It has more symbols or wires than it tells."));
    return schematic;
}

} // namespace workbench
