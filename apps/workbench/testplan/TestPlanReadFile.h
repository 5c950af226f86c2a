#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <zvutil/ZvXMLReadFile.h>

namespace workbench {

/// Reads a test plan from XML.
class TestPlanReadFile : public ZvXMLReadFile
{
public:
    explicit TestPlanReadFile(const zvutil::ZvFilePath& path);

    /// Returns the whole plan; call once. Throws `FileError` if the file isn't a test plan or is
    /// incomplete, and `Stopped` if \p progress returns false.
    TestPlan read(const Progress& progress);
};

} // namespace workbench
