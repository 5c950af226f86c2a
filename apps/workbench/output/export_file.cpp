#include "output/export_file.h"

#include "documents/save_bytes.h"
#include "output/OutputContent.h"
#include "output/printing.h"

#include <zvworkbench/Document.h>

namespace workbench {

QString pdfExtension()
{
    return QStringLiteral(".pdf");
}

void exportFile(const Document& document, const zvutil::ZvFilePath& target,
                const Progress& progress)
{
    const auto& content = dynamic_cast<const OutputContent&>(document);
    const QString name = target.toQString();
    for (const ExportFormat& format : content.exportFormats()) {
        if (name.endsWith(format.extension, Qt::CaseInsensitive)) {
            saveBytes(target, format.bytes(progress));
            return;
        }
    }
    saveBytes(
        target,
        pdfOf(content, document.shortTitle(), usualPages(content.orientation()), {}, progress));
}

} // namespace workbench
