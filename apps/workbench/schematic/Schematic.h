#pragma once

#include <QCoreApplication>
#include <QPainterPath>
#include <QPoint>
#include <QString>
#include <QVector>

#include <array>

namespace workbench {

enum class SymbolKind { Resistor, Capacitor, Diode, Source, Ground, Chip };

constexpr std::array<SymbolKind, 6> symbolKinds = {SymbolKind::Resistor, SymbolKind::Capacitor,
                                                   SymbolKind::Diode,    SymbolKind::Source,
                                                   SymbolKind::Ground,   SymbolKind::Chip};

/// All places are in whole steps of the grid. A scene shows a step as so many units.
constexpr int gridStep = 10;
constexpr int farthestStep = 1'000'000;
constexpr int maximumSymbols = 100'000;
constexpr int maximumWires = 100'000;
constexpr int maximumWirePoints = 10'000;

struct Symbol
{
    int id = 0; ///< tells it from the others while the document is open
    SymbolKind kind = SymbolKind::Resistor;
    QString reference; ///< "R1"
    QString value; ///< "10k"
    QPoint position;
    int rotation = 0; ///< clockwise: 0, 90, 180 or 270 degrees
};

struct Wire
{
    int id = 0; ///< differs from those of symbols, too
    QVector<QPoint> points; ///< two at least; each leads straight to the next
};

struct Schematic
{
    Q_DECLARE_TR_FUNCTIONS(Schematic)

public:
    QVector<Symbol> symbols;
    QVector<Wire> wires;
};

bool operator==(const Symbol& a, const Symbol& b);
bool operator==(const Wire& a, const Wire& b);
bool operator==(const Schematic& a, const Schematic& b);

/// What a symbol of a kind looks like without rotation, in units of the scene around its place.
struct SymbolShape
{
    QPainterPath body; ///< may be filled
    QPainterPath lines;
    QVector<QPoint> pins; ///< in steps
};

const SymbolShape& shapeOf(SymbolKind kind);

/// "Resistor", as files have it.
QString kindName(SymbolKind kind);
/// The kind of that name in \p kind, or false.
bool kindOfName(const QString& name, SymbolKind& kind);

/// The highest number in the references of a kind, 0 if there is none. Takes time for each symbol.
qint64 highestNumber(const Schematic& schematic, SymbolKind kind);
/// "R4".
QString referenceOf(SymbolKind kind, qint64 number);
/// The next free one of a kind, counted on from the highest.
QString nextReference(const Schematic& schematic, SymbolKind kind);

QPoint rotated(const QPoint& point, int rotation);

bool isWithinReach(const QPoint& point);

/// An empty text, or why the wire can't be one.
QString wireFault(const QVector<QPoint>& points);

/// Without points that lie in the middle of a straight part, or twice in a row.
QVector<QPoint> simplified(const QVector<QPoint>& points);

/// The points where three ends of wires and pins meet; a wire that passes by counts as two.
QVector<QPoint> junctionsOf(const Schematic& schematic);

} // namespace workbench
