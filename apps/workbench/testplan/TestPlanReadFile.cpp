#include "testplan/TestPlanReadFile.h"

#include "documents/XmlText.h"

#include <cmath>

namespace workbench {

namespace {

CellValue readCell(const XmlElement& cell)
{
    const QString type = textAttribute(cell, "type");
    const QString value = textAttribute(cell, "value");
    if (type == QLatin1String("text"))
        return value.isEmpty() ? CellValue() : CellValue(value);
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (type != QLatin1String("number") || !isNumber || !std::isfinite(number))
        throw FileError(
            TestPlan::tr("It has a cell of type “%1” with the value “%2”, which can't be "
                         "understood.")
                .arg(type.left(40), value.left(40)));
    return number;
}

[[noreturn]] void complainOfEnd(int done, int all)
{
    throw FileError(
        TestPlan::tr("It ends after row %1 of %2, so a part of it is lost.").arg(done).arg(all));
}

/// The next child, which has to be a \p name, or null if there is none.
auto nextChild(XmlElement& parent, const char* name)
{
    auto child = parent.next_child();
    if (child && !isElement(child.get(), name))
        throw FileError(TestPlan::tr("It has an element “%1” where “%2” is expected.")
                            .arg(QString::fromUtf8(child->name()), QString::fromUtf8(name)));
    return child;
}

bool isDisabled(const XmlElement& row)
{
    const QString text = textAttribute(row, "disabled");
    if (text != QLatin1String("true") && text != QLatin1String("false"))
        throw FileError(
            TestPlan::tr("It has a row whose “disabled” is “%1”; it should be “true” or "
                         "“false”.")
                .arg(text.left(40)));
    return text == QLatin1String("true");
}

/// Nothing if not all cells are there.
bool readRow(XmlElement& element, int columns, TestPlanRow& row)
{
    const int count = numberAttribute(element, "cells", 0, columns);
    row.isDisabled = isDisabled(element);
    for (int column = 0; column < count; ++column) {
        const auto cell = nextChild(element, "cell");
        if (!cell)
            return false;
        row.cells.append(readCell(*cell));
    }
    if (nextChild(element, "cell"))
        throw FileError(TestPlan::tr("It has a row with more cells than it tells."));
    return true;
}

} // namespace

TestPlanReadFile::TestPlanReadFile(const zvutil::ZvFilePath& path)
    : ZvXMLReadFile(path)
{
}

TestPlan TestPlanReadFile::read(const Progress& progress)
{
    const auto root = reader().root_element();
    requireRoot(root.get(), "testplan", TestPlan::tr("test plan"));
    const int rows = numberAttribute(*root, "rows", 0, maximumPlanRows);
    const int columns = numberAttribute(*root, "columns", 1, maximumPlanColumns);
    TestPlan plan;
    for (int column = 0; column < columns; ++column) {
        const auto heading = nextChild(*root, "heading");
        if (!heading)
            complainOfEnd(0, rows);
        plan.headings.append(textAttribute(*heading, "text"));
    }
    // Nothing is reserved: the count is only what the file claims.
    for (int row = 0; row < rows; ++row) {
        const auto element = nextChild(*root, "row");
        plan.rows.emplace_back();
        if (!element || !readRow(*element, columns, plan.rows.back()))
            complainOfEnd(row, rows);
        report(progress, row, rows);
    }
    if (nextChild(*root, "row"))
        throw FileError(TestPlan::tr("It has more rows than the %1 that it tells.").arg(rows));
    return plan;
}

} // namespace workbench
