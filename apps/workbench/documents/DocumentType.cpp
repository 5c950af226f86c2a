#include "documents/DocumentType.h"

#include <algorithm>

namespace workbench {

namespace {

template <typename Predicate>
const DocumentType* firstType(Predicate predicate)
{
    const std::vector<DocumentType>& types = documentTypes();
    const auto found = std::find_if(types.begin(), types.end(), predicate);
    return found == types.end() ? nullptr : &*found;
}

} // namespace

const std::vector<DocumentType>& documentTypes()
{
    static const std::vector<DocumentType> types = {
        {QStringLiteral("testplan"), QStringLiteral("Test plan"), QStringLiteral(".testplan"), 2},
        {QStringLiteral("schematic"), QStringLiteral("Schematic"), QStringLiteral(".zvsch"), 1},
        {QStringLiteral("script"), QStringLiteral("Script"), QStringLiteral(".zvscr"), 0},
    };
    return types;
}

const DocumentType* documentTypeOf(const QString& id)
{
    return firstType([&id](const DocumentType& type) { return type.id == id; });
}

const DocumentType* documentTypeOfFile(const QString& file)
{
    return firstType([&file](const DocumentType& type) {
        return file.endsWith(type.extension, Qt::CaseInsensitive);
    });
}

} // namespace workbench
