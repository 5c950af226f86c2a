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

    /// Writes \p schematic, and returns whether the file now contains it. Throws `FileError` if a
    /// text of a symbol can't be written, and `Stopped` if \p progress returns false. A file that
    /// wasn't written stays as it was.
    bool save(const Schematic& schematic, const Progress& progress);

private:
    void write(const Schematic& schematic, const Progress& progress);
};

} // namespace workbench
