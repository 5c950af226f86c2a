#pragma once

#include <QString>

#include <vector>

namespace workbench {

/// A type of document that the workbench opens.
struct DocumentType
{
    QString id; ///< "testplan", "schematic" or "script", as the command line has it
    QString name; ///< what one is called: "Test plan", "Schematic", "Script"
    QString extension; ///< of its files, with the dot
    int fileType; ///< as `ZvContentWidget::fileType` wants it; 0 where that knows none
};

/// All types, in the order of the menu "New". Valid for good, as are references to its elements.
const std::vector<DocumentType>& documentTypes();

/// The type of that id, or nullptr.
const DocumentType* documentTypeOf(const QString& id);

/// The type of files with the extension of \p file, in any case, or nullptr.
const DocumentType* documentTypeOfFile(const QString& file);

} // namespace workbench
