#include <zvworkbench/DocumentType.h>

#include "common/Registry.h"

namespace workbench {

namespace {

Registry<DocumentType>& types()
{
    static Registry<DocumentType> types("document type");
    return types;
}

/// Returns what is wrong with \p type, or an empty text.
QString problemWith(const DocumentType& type)
{
    if (!type.make)
        return QStringLiteral("it doesn't say how documents are made");
    if (type.extension.size() < 2 || !type.extension.startsWith(QLatin1Char('.')))
        return QStringLiteral("\"%1\" is not an extension with its dot").arg(type.extension);
    if (const DocumentType* const other = documentTypeOfFile(type.extension))
        return QStringLiteral("the extension %1 belongs to \"%2\"").arg(type.extension, other->id);
    return {};
}

} // namespace

bool addDocumentType(const DocumentType& type)
{
    return types().add(type, problemWith(type));
}

const std::vector<const DocumentType*>& documentTypes()
{
    return types().items();
}

const DocumentType* documentTypeOf(const QString& id)
{
    return types().first([&id](const DocumentType& type) { return type.id == id; });
}

const DocumentType* documentTypeOfFile(const QString& file)
{
    return types().first([&file](const DocumentType& type) {
        return file.endsWith(type.extension, Qt::CaseInsensitive);
    });
}

} // namespace workbench
