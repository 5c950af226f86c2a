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

    /// The whole schematic without ids, once. Throws `FileError` if the file isn't one, or is
    /// only a part of one, and `Stopped` if \p progress says so.
    Schematic read(const Progress& progress);
};

} // namespace workbench
