// Adds the workbench's own types of documents, as modules add theirs.
//
// Modules link against this library, so that it has been loaded before them: its types come first.

#include "shell/document_types.h"

#include <zvworkbench/DocumentType.h>

#include <HostSupport/ComConstruct.h>

#include <QString>

namespace {

const bool areTypesAdded = [] {
    workbench::addOwnDocumentTypes();
    return true;
}();

/// Tells the host whether the file named by the first word is a document, which it doesn't run as a script
/// then.
COMERROR opens(int wordCount, char** words, YRef<MessageHandler> /*messages*/,
               const ScpParseContext& /*context*/)
{
    const bool isDocument = areTypesAdded && wordCount > 1
        && workbench::documentTypeOfFile(QString::fromUtf8(words[1]));
    return isDocument ? COM_OK : COM_FAILED;
}

const ComConstruct opensCommand("_workbench_opens", &opens, 0);

} // namespace
