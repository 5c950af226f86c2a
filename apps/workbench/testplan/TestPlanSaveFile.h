#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <zvutil/ZvBasicXMLSaveFile.h>

namespace workbench {

/// Writes a test plan as XML.
class TestPlanSaveFile : public ZvBasicXMLSaveFile<char>
{
public:
    explicit TestPlanSaveFile(const zvutil::ZvFilePath& path);

    /// Writes \p plan, and returns whether the file now contains it. Throws `FileError` if a cell
    /// or heading can't be written, and `Stopped` if \p progress returns false. A file that wasn't
    /// written stays as it was.
    bool save(const TestPlan& plan, const Progress& progress);

private:
    void write(const TestPlan& plan, const Progress& progress);
};

} // namespace workbench
