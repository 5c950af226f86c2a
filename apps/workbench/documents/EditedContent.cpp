#include "documents/EditedContent.h"

#include <zvworkbench/Document.h>

namespace workbench {

void finishTyping(const Document& document)
{
    if (const auto* const content = dynamic_cast<const EditedContent*>(&document))
        content->finishTyping();
}

} // namespace workbench
