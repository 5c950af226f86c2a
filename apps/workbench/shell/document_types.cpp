#include "shell/document_types.h"

#include "schematic/SchematicDocument.h"
#include "script/ScriptDocument.h"
#include "testplan/TestPlanDocument.h"

namespace workbench {

void addOwnDocumentTypes()
{
    addDocumentType(testPlanType());
    addDocumentType(schematicType());
    addDocumentType(scriptType());
}

} // namespace workbench
