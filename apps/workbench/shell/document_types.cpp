#include "shell/document_types.h"

#include "schematic/SchematicDocument.h"
#include "script/ScriptDocument.h"
#include "script/TextDocument.h"
#include "testplan/TestPlanDocument.h"

namespace workbench {

void addOwnDocumentTypes()
{
    addDocumentType(testPlanType());
    addDocumentType(schematicType());
    addDocumentType(scriptType());
    addDocumentType(textType());
}

} // namespace workbench
