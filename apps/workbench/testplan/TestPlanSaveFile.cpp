#include "testplan/TestPlanSaveFile.h"

#include "documents/xml_text.h"

namespace workbench {

namespace {

using Element = zvutil::experimental::xml::basic_abstract_xml_element_writer<char>;

void setAttribute(Element& element, const char* name, const QString& value)
{
    element.attribute(name, value.toUtf8().constData());
}

int filledCells(const TestPlanRow& row)
{
    int count = row.cells.size();
    while (count > 0 && !row.cells.at(count - 1).isValid())
        --count;
    return count;
}

void writeRow(Element& root, const TestPlan& plan, int number)
{
    const TestPlanRow& row = plan.rows[static_cast<std::size_t>(number)];
    const auto element = root.child("row");
    // The count reveals a file that breaks off within a row, which would otherwise be read as a
    // shorter one.
    const int count = filledCells(row);
    setAttribute(*element, "cells", QString::number(count));
    element->attribute("disabled", row.isDisabled ? "true" : "false");
    for (int column = 0; column < count; ++column) {
        const CellValue& value = row.cells.at(column);
        const auto cell = element->child("cell");
        // Values are attributes, of which a file that breaks off never shows a part.
        cell->attribute("type", value.userType() == QMetaType::Double ? "number" : "text");
        const QString text = cellText(value);
        requireWritable(text, [&] {
            return TestPlan::tr("The cell in row %1, column “%2”,")
                .arg(QString::number(number + 1), plan.headings.value(column));
        });
        setAttribute(*cell, "value", text);
    }
}

} // namespace

TestPlanSaveFile::TestPlanSaveFile(const zvutil::ZvFilePath& path)
    : ZvBasicXMLSaveFile(path)
{
}

bool TestPlanSaveFile::save(const TestPlan& plan, const Progress& progress)
{
    write(plan, progress);
    return commit();
}

void TestPlanSaveFile::write(const TestPlan& plan, const Progress& progress)
{
    const auto root = writer().root_element("testplan");
    root->attribute("version", "1");
    setAttribute(*root, "rows", QString::number(plan.rows.size()));
    setAttribute(*root, "columns", QString::number(plan.headings.size()));
    for (int column = 0; column < plan.headings.size(); ++column) {
        const QString& heading = plan.headings.at(column);
        requireWritable(heading,
                        [&] { return TestPlan::tr("The heading of column %1").arg(column + 1); });
        setAttribute(*root->child("heading"), "text", heading);
    }
    const int rows = static_cast<int>(plan.rows.size());
    for (int row = 0; row < rows; ++row) {
        writeRow(*root, plan, row);
        report(progress, row, rows);
    }
}

} // namespace workbench
