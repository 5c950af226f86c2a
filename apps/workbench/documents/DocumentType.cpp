#include "documents/DocumentType.h"

#include <algorithm>

namespace workbench {

namespace {

std::vector<const DocumentType*>& types()
{
    static std::vector<const DocumentType*> types;
    return types;
}

template <typename Predicate>
const DocumentType* firstType(Predicate predicate)
{
    const auto found = std::find_if(types().begin(), types().end(), predicate);
    return found == types().end() ? nullptr : *found;
}

} // namespace

void addDocumentType(const DocumentType& type)
{
    if (!documentTypeOf(type.id))
        types().push_back(&type);
}

const std::vector<const DocumentType*>& documentTypes()
{
    return types();
}

const DocumentType* documentTypeOf(const QString& id)
{
    return firstType([&id](const DocumentType* type) { return type->id == id; });
}

const DocumentType* documentTypeOfFile(const QString& file)
{
    return firstType([&file](const DocumentType* type) {
        return file.endsWith(type->extension, Qt::CaseInsensitive);
    });
}

} // namespace workbench
