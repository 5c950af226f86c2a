#include "output/OutputContent.h"

#include "common/path_names.h"

#include <zvworkbench/Document.h>

#include <QDir>

namespace workbench {

Failure nothingToSee(const Document& document, const QString& what)
{
    return {
        what.arg(document.shortTitle()),
        QCoreApplication::translate("workbench::OutputContent", "It is empty."),
        QCoreApplication::translate("workbench::OutputContent", "Put something into it first.")};
}

PageTitle pageTitleOf(const Document& document)
{
    return {document.shortTitle(), QDir::toNativeSeparators(qtFileName(document.filename()))};
}

} // namespace workbench
