// Any bytes as a test plan's file, and behind the first NUL edits of the plan: what has been read is
// written and read again as the same plan, before the edits and after; undoing all edits gives the
// plan of the file, and redoing all gives the last one.

#include "common/path_names.h"
#include "documents/xml_text.h"
#include "support/files.h"
#include "testplan/TestPlanClipboard.h"
#include "testplan/TestPlanModel.h"
#include "testplan/TestPlanReadFile.h"
#include "testplan/TestPlanSaveFile.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

using namespace workbench;
using zvfuzz::require;

namespace {

constexpr int maxEdits = 30;

bool goOn(int /*done*/, int /*all*/)
{
    return true;
}

/// A row up to its last cell that isn't empty; a number shows what it is by its type.
bool isSame(const TestPlanRow& a, const TestPlanRow& b)
{
    if (a.isDisabled != b.isDisabled)
        return false;
    for (int column = 0; column < std::max(a.cells.size(), b.cells.size()); ++column) {
        const CellValue x = a.cells.value(column);
        const CellValue y = b.cells.value(column);
        if (x.userType() != y.userType() || cellText(x) != cellText(y))
            return false;
    }
    return true;
}

bool isSame(const TestPlan& a, const TestPlan& b)
{
    return a.headings == b.headings
        && std::equal(a.rows.begin(), a.rows.end(), b.rows.begin(), b.rows.end(),
                      [](const TestPlanRow& x, const TestPlanRow& y) { return isSame(x, y); });
}

bool isWritable(const TestPlan& plan)
{
    const auto isText = [](const QString& text) { return unwritableCharacter(text) < 0; };
    return std::all_of(plan.headings.begin(), plan.headings.end(), isText)
        && std::all_of(plan.rows.begin(), plan.rows.end(), [&](const TestPlanRow& row) {
               return std::all_of(row.cells.begin(), row.cells.end(),
                                  [&](const CellValue& cell) { return isText(cellText(cell)); });
           });
}

std::optional<TestPlan> planIn(const QString& file)
{
    try {
        return TestPlanReadFile(filePath(file)).read(&goOn);
    } catch (const FileError& error) {
        require(!error.reason().isEmpty());
        return {};
    }
}

bool isSaved(const TestPlan& plan, const QString& file)
{
    try {
        return TestPlanSaveFile(filePath(file)).save(plan, &goOn);
    } catch (const FileError& error) {
        require(!error.reason().isEmpty());
        return false;
    }
}

void checkSavedAndRead(const TestPlan& plan, const QString& file)
{
    const bool isWritten = isSaved(plan, file);
    require(isWritten == isWritable(plan));
    if (!isWritten)
        return;
    const std::optional<TestPlan> again = planIn(file);
    require(again && isSame(*again, plan));
}

void checkCells(const TestPlan& plan)
{
    for (const TestPlanRow& row : plan.rows) {
        require(row.cells.size() <= plan.headings.size());
        for (const CellValue& cell : row.cells) {
            if (cell.userType() == QMetaType::Double)
                require(cellValue(cellText(cell)) == cell);
            else
                require(!cell.isValid() || !cell.toString().isEmpty());
        }
    }
}

QString textOf(FuzzedDataProvider& bytes)
{
    return QString::fromUtf8(bytes.ConsumeRandomLengthString(40).c_str());
}

/// A part of a table of \p all rows or columns, and perhaps a place beyond it.
struct Part
{
    Part(FuzzedDataProvider& bytes, int all)
        : first(bytes.ConsumeIntegralInRange(0, all))
        , count(bytes.ConsumeIntegralInRange(0, 4))
        , destination(bytes.ConsumeIntegralInRange(0, all + 1))
    {
    }

    int first;
    int count;
    int destination;
};

void edit(TestPlanModel& model, FuzzedDataProvider& bytes)
{
    const int kind = bytes.ConsumeIntegralInRange(0, 9);
    const Part rows(bytes, model.rowCount());
    const Part columns(bytes, model.columnCount());
    const QModelIndex cell = model.index(rows.first, columns.first);
    switch (kind) {
    case 0:
        model.setData(cell, textOf(bytes), Qt::EditRole);
        break;
    case 1:
        model.setHeaderData(columns.first, Qt::Horizontal, textOf(bytes), Qt::EditRole);
        break;
    case 2:
        model.insertRows(rows.first, rows.count);
        break;
    case 3:
        model.removeRows(rows.first, rows.count);
        break;
    case 4:
        model.insertColumns(columns.first, columns.count);
        break;
    case 5:
        model.removeColumns(columns.first, columns.count);
        break;
    case 6:
        model.moveRows({}, rows.first, rows.count, {}, rows.destination);
        break;
    case 7:
        model.moveColumns({}, columns.first, columns.count, {}, columns.destination);
        break;
    case 8:
        model.paste(rows.first, columns.first, gridOfText(textOf(bytes), &goOn));
        break;
    default:
        if (rows.count > 0 && rows.count <= model.rowCount() - rows.first)
            model.setRowsDisabled(rows.first, rows.count, bytes.ConsumeBool());
        break;
    }
}

void checkEdits(const TestPlan& plan, FuzzedDataProvider& bytes, const QString& file)
{
    TestPlanModel model;
    model.setPlan(plan);
    for (int i = 0; i < maxEdits && bytes.remaining_bytes() > 0; ++i)
        edit(model, bytes);
    const TestPlan last = model.plan();
    checkCells(last);
    checkSavedAndRead(last, file);
    model.undoStack().setIndex(0);
    require(isSame(model.plan(), plan));
    model.undoStack().setIndex(model.undoStack().count());
    require(isSame(model.plan(), last));
}

void check(const std::uint8_t* data, std::size_t size, const QString& file)
{
    const std::uint8_t* const end = std::find(data, data + size, std::uint8_t(0));
    zvfuzz::write(file,
                  QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(end - data)));
    const std::optional<TestPlan> plan = planIn(file);
    if (!plan)
        return;
    // The reader lets through only what XML allows, so what it has read can be written.
    require(isWritable(*plan));
    checkCells(*plan);
    checkSavedAndRead(*plan, file);
    if (end == data + size)
        return;
    FuzzedDataProvider bytes(end + 1, static_cast<std::size_t>(data + size - end - 1));
    checkEdits(*plan, bytes, file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir dir;
    static const QString file = dir.filePath(QStringLiteral("plan.testplan"));

    check(data, size, file);
    // Files that have been read are closed by a deleteLater().
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
