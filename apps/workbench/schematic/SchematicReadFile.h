#pragma once

#include "documents/ProgressBox.h"
#include "schematic/Schematic.h"

#include <zvutil/ZvXMLReadFile.h>

namespace workbench {

/// Reads a schematic from XML.
class SchematicReadFile : public ZvXMLReadFile
{
public:
    explicit SchematicReadFile(const zvutil::ZvFilePath& path);

    /// Returns the whole schematic, without ids; call once. Throws `FileError` if the file isn't a
    /// schematic or is incomplete, and `Stopped` if \p progress returns false.
    Schematic read(const Progress& progress);
};

} // namespace workbench
