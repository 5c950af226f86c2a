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

    /// The whole plan, once. Throws `FileError` if the file isn't one, or is only a part of one, and
    /// `Stopped` if \p progress says so.
    TestPlan read(const Progress& progress);
};

} // namespace workbench
