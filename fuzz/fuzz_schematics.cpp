// Any bytes as a schematic's file, and behind the first NUL edits of the schematic: what has been read
// is written and read again as the same schematic, before the edits and after; each edit leads to its
// end and back; the junctions are those of the plain rule.

#include "common/path_names.h"
#include "documents/xml_text.h"
#include "schematic/SchematicEdit.h"
#include "schematic/SchematicReadFile.h"
#include "schematic/SchematicSaveFile.h"
#include "schematic/WireTool.h"
#include "support/files.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace workbench;
using zvfuzz::require;

namespace {

constexpr int maxEdits = 30;
/// Up to this many points the plain rule is asked, which takes their number squared.
constexpr int maxOraclePoints = 300;

bool goOn(int /*done*/, int /*all*/)
{
    return true;
}

std::optional<Schematic> schematicIn(const QString& file)
{
    try {
        return SchematicReadFile(filePath(file)).read(&goOn);
    } catch (const FileError& error) {
        require(!error.reason().isEmpty());
        return {};
    }
}

bool isSaved(const Schematic& schematic, const QString& file)
{
    try {
        return SchematicSaveFile(filePath(file)).save(schematic, &goOn);
    } catch (const FileError& error) {
        require(!error.reason().isEmpty());
        return false;
    }
}

bool isWritable(const Schematic& schematic)
{
    return std::all_of(schematic.symbols.begin(), schematic.symbols.end(),
                       [](const Symbol& symbol) {
                           return unwritableCharacter(symbol.reference) < 0
                               && unwritableCharacter(symbol.value) < 0;
                       });
}

Schematic withoutIds(Schematic schematic)
{
    for (Symbol& symbol : schematic.symbols)
        symbol.id = 0;
    for (Wire& wire : schematic.wires)
        wire.id = 0;
    return schematic;
}

void checkSavedAndRead(const Schematic& schematic, const QString& file)
{
    const bool isWritten = isSaved(schematic, file);
    require(isWritten == isWritable(schematic));
    if (!isWritten)
        return;
    const std::optional<Schematic> again = schematicIn(file);
    require(again && *again == withoutIds(schematic));
}

bool isWithin(const QPoint& point, const QPoint& a, const QPoint& b)
{
    if (a.y() == b.y())
        return point.y() == a.y() && std::min(a.x(), b.x()) < point.x()
            && point.x() < std::max(a.x(), b.x());
    return point.x() == a.x() && std::min(a.y(), b.y()) < point.y()
        && point.y() < std::max(a.y(), b.y());
}

/// Returns how many times a wire passes a point that isn't its end.
int passes(const Wire& wire, const QPoint& point)
{
    int count = 0;
    for (int i = 1; i < wire.points.size(); ++i) {
        count += isWithin(point, wire.points.at(i - 1), wire.points.at(i)) ? 1 : 0;
        count += i + 1 < wire.points.size() && wire.points.at(i) == point ? 1 : 0;
    }
    return count;
}

std::vector<QPoint> endsOf(const Schematic& schematic)
{
    std::vector<QPoint> ends;
    for (const Symbol& symbol : schematic.symbols) {
        for (const QPoint& pin : shapeOf(symbol.kind).pins)
            ends.push_back(symbol.position + rotated(pin, symbol.rotation));
    }
    for (const Wire& wire : schematic.wires) {
        ends.push_back(wire.points.first());
        ends.push_back(wire.points.last());
    }
    return ends;
}

bool isBefore(const QPoint& a, const QPoint& b)
{
    return std::pair(a.x(), a.y()) < std::pair(b.x(), b.y());
}

void checkJunctions(const Schematic& schematic)
{
    int points = 0;
    for (const Wire& wire : schematic.wires)
        points += wire.points.size();
    QVector<QPoint> junctions = junctionsOf(schematic);
    std::sort(junctions.begin(), junctions.end(), &isBefore);
    std::vector<QPoint> ends = endsOf(schematic);
    if (points + static_cast<int>(ends.size()) > maxOraclePoints)
        return;
    std::sort(ends.begin(), ends.end(), &isBefore);
    QVector<QPoint> expected;
    for (auto it = ends.begin(); it != ends.end();) {
        const auto next = std::upper_bound(it, ends.end(), *it, &isBefore);
        int meeting = static_cast<int>(next - it);
        for (const Wire& wire : schematic.wires)
            meeting += 2 * passes(wire, *it);
        if (meeting >= 3)
            expected.append(*it);
        it = next;
    }
    require(junctions == expected);
}

void checkParts(const Schematic& schematic)
{
    for (const Wire& wire : schematic.wires) {
        require(wireFault(wire.points).isEmpty());
        const QVector<QPoint> simple = simplified(wire.points);
        require(simple.first() == wire.points.first() && simple.last() == wire.points.last());
        require(wireFault(simple).isEmpty() && simplified(simple) == simple);
    }
    for (const SymbolKind kind : symbolKinds) {
        const QString next = nextReference(schematic, kind);
        require(std::none_of(schematic.symbols.begin(), schematic.symbols.end(),
                             [&](const Symbol& symbol) { return symbol.reference == next; }));
    }
    checkJunctions(schematic);
}

QPoint stepIn(FuzzedDataProvider& bytes)
{
    const int x = bytes.ConsumeIntegralInRange(-20, 20);
    return {x, bytes.ConsumeIntegralInRange(-20, 20)};
}

Symbol symbolIn(FuzzedDataProvider& bytes, int id)
{
    Symbol symbol;
    symbol.id = id;
    symbol.kind = bytes.PickValueInArray(symbolKinds);
    symbol.reference = QString::fromUtf8(bytes.ConsumeRandomLengthString(10).c_str());
    symbol.value = QString::fromUtf8(bytes.ConsumeRandomLengthString(10).c_str());
    symbol.position = stepIn(bytes);
    symbol.rotation = 90 * bytes.ConsumeIntegralInRange(0, 3);
    return symbol;
}

QVector<QPoint> wireIn(FuzzedDataProvider& bytes)
{
    WireTool tool;
    tool.begin(stepIn(bytes));
    for (int i = bytes.ConsumeIntegralInRange(1, 6); i > 0; --i)
        tool.extend(stepIn(bytes));
    return tool.finish();
}

void moveSome(Schematic& schematic, FuzzedDataProvider& bytes)
{
    const QPoint steps = stepIn(bytes);
    for (Symbol& symbol : schematic.symbols)
        symbol.position += bytes.ConsumeBool() ? steps : QPoint();
    for (Wire& wire : schematic.wires) {
        const QPoint own = bytes.ConsumeBool() ? steps : QPoint();
        for (QPoint& point : wire.points)
            point += own;
    }
}

template <typename Element>
void removeSome(QVector<Element>& list, FuzzedDataProvider& bytes)
{
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&](const Element& /*element*/) { return bytes.ConsumeBool(); }),
               list.end());
}

/// Returns what an edit makes of a schematic: elements that stay keep their order, and new ones come
/// last.
Schematic edited(const Schematic& before, FuzzedDataProvider& bytes, int& nextId)
{
    Schematic after = before;
    switch (bytes.ConsumeIntegralInRange(0, 4)) {
    case 0:
        after.symbols.append(symbolIn(bytes, nextId++));
        break;
    case 1: {
        const QVector<QPoint> points = wireIn(bytes);
        if (wireFault(points).isEmpty())
            after.wires.append({nextId++, points});
        break;
    }
    case 2:
        removeSome(after.symbols, bytes);
        removeSome(after.wires, bytes);
        break;
    case 3:
        removeSome(after.symbols, bytes);
        after.symbols.append(symbolIn(bytes, nextId++));
        break;
    default:
        moveSome(after, bytes);
        break;
    }
    return after;
}

/// An edit, and what lies before and behind it.
struct Step
{
    Schematic before;
    Schematic after;
    std::unique_ptr<SchematicEdit> edit;
};

/// Merges \p next into \p last if both are moves of the same.
bool isMerged(Step& last, const Step& next)
{
    if (last.edit->id() < 0 || next.edit->id() < 0 || !last.edit->mergeWith(next.edit.get()))
        return false;
    last.after = next.after;
    require(last.edit->isObsolete() == (last.before == last.after));
    return true;
}

Schematic checkEdits(Schematic schematic, FuzzedDataProvider& bytes)
{
    int nextId = 1;
    for (Symbol& symbol : schematic.symbols)
        symbol.id = nextId++;
    for (Wire& wire : schematic.wires)
        wire.id = nextId++;
    const Schematic first = schematic;
    const auto modify = [&schematic](const std::function<void(Schematic&)>& change) {
        change(schematic);
    };
    std::vector<Step> steps;
    for (int i = 0; i < maxEdits && bytes.remaining_bytes() > 0; ++i) {
        const auto merging =
            bytes.ConsumeBool() ? SchematicEdit::Merging::WithMoves : SchematicEdit::Merging::None;
        Step step{schematic, edited(schematic, bytes, nextId), nullptr};
        step.edit =
            std::make_unique<SchematicEdit>(QString(), step.before, step.after, merging, modify);
        require(step.edit->isEmpty() == (step.before == step.after));
        step.edit->redo();
        require(schematic == step.after);
        if (steps.empty() || !isMerged(steps.back(), step))
            steps.push_back(std::move(step));
    }
    Schematic last = schematic;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        step->edit->undo();
        require(schematic == step->before);
    }
    require(schematic == first);
    for (const Step& step : steps) {
        step.edit->redo();
        require(schematic == step.after);
    }
    require(schematic == last);
    return last;
}

void check(const std::uint8_t* data, std::size_t size, const QString& file)
{
    const std::uint8_t* const end = std::find(data, data + size, std::uint8_t(0));
    zvfuzz::write(file,
                  QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(end - data)));
    const std::optional<Schematic> schematic = schematicIn(file);
    if (!schematic)
        return;
    // The reader lets through only what XML allows, so what it has read can be written.
    require(isWritable(*schematic));
    checkParts(*schematic);
    checkSavedAndRead(*schematic, file);
    if (end == data + size)
        return;
    FuzzedDataProvider bytes(end + 1, static_cast<std::size_t>(data + size - end - 1));
    const Schematic last = checkEdits(*schematic, bytes);
    checkParts(last);
    // What has moved out of reach is refused by the scene before it becomes an edit.
    const bool isInReach =
        std::all_of(last.symbols.begin(), last.symbols.end(),
                    [](const Symbol& symbol) { return isWithinReach(symbol.position); })
        && std::all_of(last.wires.begin(), last.wires.end(), [](const Wire& wire) {
               return std::all_of(wire.points.begin(), wire.points.end(), &isWithinReach);
           });
    if (isInReach)
        checkSavedAndRead(last, file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir dir;
    static const QString file = dir.filePath(QStringLiteral("sheet.zvsch"));

    check(data, size, file);
    // Files that have been read are closed by a deleteLater().
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
