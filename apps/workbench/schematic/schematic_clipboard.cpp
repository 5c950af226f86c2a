#include "schematic/schematic_clipboard.h"

#include "schematic/SchematicMimeData.h"

#include <QClipboard>
#include <QDataStream>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace workbench {

namespace {

const QString format = QStringLiteral("application/x-workbench-schematic");
constexpr qint32 formatVersion = 1;

void writeSymbol(QDataStream& stream, const Symbol& symbol)
{
    stream << kindName(symbol.kind) << symbol.reference << symbol.value << symbol.position
           << qint32(symbol.rotation);
}

bool readSymbol(QDataStream& stream, Symbol& symbol)
{
    QString kind;
    qint32 rotation = 0;
    stream >> kind >> symbol.reference >> symbol.value >> symbol.position >> rotation;
    symbol.rotation = rotation;
    return stream.status() == QDataStream::Ok && kindOfName(kind, symbol.kind)
        && isWithinReach(symbol.position) && rotation >= 0 && rotation < 360 && rotation % 90 == 0;
}

bool readWire(QDataStream& stream, Wire& wire)
{
    qint32 count = 0;
    stream >> count;
    for (qint32 i = 0; i < count && count <= maxWirePoints; ++i) {
        QPoint point;
        stream >> point;
        if (stream.status() != QDataStream::Ok || !isWithinReach(point))
            return false;
        wire.points.append(point);
    }
    return wireFault(wire.points).isEmpty();
}

} // namespace

void copyToClipboard(const Schematic& part)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << formatVersion << qint32(part.symbols.size()) << qint32(part.wires.size());
    for (const Symbol& symbol : part.symbols)
        writeSymbol(stream, symbol);
    for (const Wire& wire : part.wires) {
        stream << qint32(wire.points.size());
        for (const QPoint& point : wire.points)
            stream << point;
    }
    auto data = std::make_unique<SchematicMimeData>(part, format, bytes);
    QGuiApplication::clipboard()->setMimeData(data.release());
}

bool hasSchematicOnClipboard()
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasFormat(format);
}

bool readFromClipboard(Schematic& part)
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasFormat(format))
        return false;
    QDataStream stream(data->data(format));
    stream.setVersion(QDataStream::Qt_5_15);
    qint32 version = 0;
    qint32 symbols = 0;
    qint32 wires = 0;
    stream >> version >> symbols >> wires;
    if (version != formatVersion || symbols < 0 || symbols > maxSymbols || wires < 0
        || wires > maxWires)
        return false;
    Schematic read;
    for (qint32 i = 0; i < symbols; ++i) {
        Symbol symbol;
        if (!readSymbol(stream, symbol))
            return false;
        read.symbols.append(symbol);
    }
    for (qint32 i = 0; i < wires; ++i) {
        Wire wire;
        if (!readWire(stream, wire))
            return false;
        read.wires.append(wire);
    }
    if (stream.status() != QDataStream::Ok || (symbols == 0 && wires == 0))
        return false;
    part = read;
    return true;
}

} // namespace workbench
