#pragma once

#include "documents/ProgressBox.h"
#include "schematic/Schematic.h"

#include <zvutil/ZvBasicXMLSaveFile.h>

namespace workbench {

/// Writes a schematic as XML.
class SchematicSaveFile : public ZvBasicXMLSaveFile<char>
{
public:
    explicit SchematicSaveFile(const zvutil::ZvFilePath& path);

    /// Writes it, and returns whether the file is this schematic now. Throws `FileError` if a symbol
    /// holds what can't be written, and `Stopped` if \p progress says so. A file that wasn't written
    /// is what it was.
    bool save(const Schematic& schematic, const Progress& progress);

private:
    void write(const Schematic& schematic, const Progress& progress);
};

} // namespace workbench
