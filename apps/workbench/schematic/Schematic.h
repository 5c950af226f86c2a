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

/// Units of the scene per step of the grid. A schematic has all its places in whole steps.
constexpr int gridStep = 10;
constexpr int farthestStep = 1'000'000;
constexpr int maxSymbols = 100'000;
constexpr int maxWires = 100'000;
constexpr int maxWirePoints = 10'000;

struct Symbol
{
    int id = 0; ///< distinguishes the symbol from all others while the document is open
    SymbolKind kind = SymbolKind::Resistor;
    QString reference; ///< such as "R1"
    QString value; ///< such as "10k"
    QPoint position;
    int rotation = 0; ///< degrees clockwise: 0, 90, 180 or 270
};

struct Wire
{
    int id = 0; ///< differs from the ids of all other wires and of all symbols
    QVector<QPoint> points; ///< at least two; each is in one line, across or down, with the next
};

struct Schematic
{
    Q_DECLARE_TR_FUNCTIONS(workbench::Schematic)

public:
    QVector<Symbol> symbols;
    QVector<Wire> wires;
};

bool operator==(const Symbol& a, const Symbol& b);
bool operator==(const Wire& a, const Wire& b);
bool operator==(const Schematic& a, const Schematic& b);

/// The look of a kind of symbol without rotation, in units of the scene around its place.
struct SymbolShape
{
    QPainterPath body; ///< filled with the background
    QPainterPath lines;
    QVector<QPoint> pins; ///< places where wires connect, in steps
};

const SymbolShape& shapeOf(SymbolKind kind);

/// Returns the name of a kind in files, such as "Resistor".
QString kindName(SymbolKind kind);
/// Stores the kind called \p name in \p kind. Returns false, and stores nothing, if there is none.
bool kindOfName(const QString& name, SymbolKind& kind);

/// Returns the highest number in the references of a kind, or 0 if there is none. Takes time
/// proportional to the number of symbols.
qint64 highestNumber(const Schematic& schematic, SymbolKind kind);
/// Returns the reference for a kind and a number, such as "R4".
QString referenceOf(SymbolKind kind, qint64 number);
/// Returns the reference for a new symbol: one above the highest number of its kind.
QString nextReference(const Schematic& schematic, SymbolKind kind);

QPoint rotated(const QPoint& point, int rotation);

bool isWithinReach(const QPoint& point);

/// Returns why \p points can't be a wire, or an empty text.
QString wireFault(const QVector<QPoint>& points);

/// Returns \p points without those in the middle of a straight part, and without repetitions in a
/// row.
QVector<QPoint> simplified(const QVector<QPoint>& points);

/// Returns the points where at least three ends of wires and pins meet. A wire that passes an end
/// counts as two.
QVector<QPoint> junctionsOf(const Schematic& schematic);

} // namespace workbench
