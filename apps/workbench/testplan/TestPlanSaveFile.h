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

    /// Writes it, and returns whether the file is this plan now. Throws `FileError` if a cell or heading
    /// holds what can't be written, and `Stopped` if \p progress says so. A file that wasn't written
    /// is what it was.
    bool save(const TestPlan& plan, const Progress& progress);

private:
    void write(const TestPlan& plan, const Progress& progress);
};

} // namespace workbench
