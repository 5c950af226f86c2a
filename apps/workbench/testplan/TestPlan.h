#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <vector>

namespace workbench {

/// The content of a cell: a `double`, a `QString` that isn't empty, or nothing (an invalid value).
using CellValue = QVariant;

struct TestPlanRow
{
    QVector<CellValue> cells; ///< cells after the last one are empty
    bool isDisabled = false;
};

struct TestPlan
{
    Q_DECLARE_TR_FUNCTIONS(workbench::TestPlan)

public:
    /// Returns the plan of a new document: the usual headings and some empty rows.
    static TestPlan fresh();

    QStringList headings;
    std::vector<TestPlanRow> rows;
};

/// The limits of a plan.
constexpr int maxPlanRows = 2'000'000;
constexpr int maxPlanColumns = 4'096;

/// Returns the content of a cell after \p text is typed into it: a number if the text is wholly one
/// in the notation of the "C" locale and keeps its value as a `double`; "007" and "1e999" are
/// texts. NULs are removed.
CellValue cellValue(QString text);

/// Returns the text that a cell shows. Typed in again, the text of a number gives the same number.
QString cellText(const CellValue& value);

/// Returns the name of a cell in messages, such as "C7". Both numbers count from 0.
QString cellName(int row, int column);

} // namespace workbench
