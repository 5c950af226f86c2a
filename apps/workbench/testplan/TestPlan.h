#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <vector>

namespace workbench {

/// What a cell holds: a `double`, a `QString` that isn't empty, or nothing (an invalid value).
using CellValue = QVariant;

struct TestPlanRow
{
    QVector<CellValue> cells; ///< the cells behind the last one are empty
    bool isDisabled = false;
};

struct TestPlan
{
    Q_DECLARE_TR_FUNCTIONS(TestPlan)

public:
    /// As a new document has it: the usual headings and some empty rows.
    static TestPlan fresh();

    QStringList headings;
    std::vector<TestPlanRow> rows;
};

/// What a plan can't exceed.
constexpr int maximumPlanRows = 2'000'000;
constexpr int maximumPlanColumns = 4'096;

/// What a cell becomes if \p text is typed into it: a number if the text is wholly one in the
/// notation of the "C" locale and keeps its value as a `double`; "007" and "1e999" are texts. NULs
/// are removed.
CellValue cellValue(QString text);

/// The text that a cell shows. That of a number gives the same number again.
QString cellText(const CellValue& value);

/// "C7" for a place that counts from 0, as messages have it.
QString cellName(int row, int column);

} // namespace workbench
