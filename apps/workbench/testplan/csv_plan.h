#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <QByteArray>

namespace workbench {

/// The size of the largest CSV file that is read, in bytes.
constexpr qint64 maxCsvSize = 100'000'000;

/// A plan that has been read from CSV.
struct CsvPlan
{
    TestPlan plan;
    bool isLatin1 = false; ///< the text isn't UTF-8
};

/// Reads a plan from CSV, and loses nothing: rows may differ in length, and cells keep their blanks, which the
/// library's reader for clipboards takes away.
///
/// Commas, semicolons or tabs separate the cells, whichever the first row has most of. The first row becomes the
/// headings if none of its cells is empty or a number. Throws `FileError` if the text isn't one or has too many
/// cells, and `Stopped` if \p progress returns false.
CsvPlan planOfCsv(const QByteArray& csv, const Progress& progress);

} // namespace workbench
