#include "testplan/TestPlanReadFile.h"

#include "documents/xml_text.h"

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
        throw FileError(TestPlan::tr("A cell of type “%1” has the invalid value “%2”.")
                            .arg(type.left(40), value.left(40)));
    return number;
}

[[noreturn]] void complainOfEnd(int done, int all)
{
    throw FileError(TestPlan::tr("The file ends after row %1 of %2.").arg(done).arg(all));
}

/// Returns the next child, or null if there is none. Throws `FileError` if the child isn't called
/// \p name.
auto nextChild(XmlElement& parent, const char* name)
{
    auto child = parent.next_child();
    if (child && !isElement(child.get(), name))
        throw FileError(TestPlan::tr("Unexpected element “%1” (expected “%2”).")
                            .arg(QString::fromUtf8(child->name()), QString::fromUtf8(name)));
    return child;
}

bool isDisabled(const XmlElement& row)
{
    const QString text = textAttribute(row, "disabled");
    if (text != QLatin1String("true") && text != QLatin1String("false"))
        throw FileError(
            TestPlan::tr("Attribute “disabled” of a row is “%1”; expected “true” or “false”.")
                .arg(text.left(40)));
    return text == QLatin1String("true");
}

/// Reads a row. Returns false if not all of its cells are there.
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
        throw FileError(TestPlan::tr("A row contains more cells than it declares."));
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
    const int rows = numberAttribute(*root, "rows", 0, maxPlanRows);
    const int columns = numberAttribute(*root, "columns", 1, maxPlanColumns);
    TestPlan plan;
    for (int column = 0; column < columns; ++column) {
        const auto heading = nextChild(*root, "heading");
        if (!heading)
            complainOfEnd(0, rows);
        plan.headings.append(textAttribute(*heading, "text"));
    }
    // The count is only what the file claims, so nothing is reserved: a damaged file may claim far
    // more than it has.
    for (int row = 0; row < rows; ++row) {
        const auto element = nextChild(*root, "row");
        plan.rows.emplace_back();
        if (!element || !readRow(*element, columns, plan.rows.back()))
            complainOfEnd(row, rows);
        report(progress, row, rows);
    }
    if (nextChild(*root, "row"))
        throw FileError(
            TestPlan::tr("The file declares %n rows but contains more.", nullptr, rows));
    return plan;
}

} // namespace workbench
