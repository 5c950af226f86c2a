#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace workbench {

class Document;

/// A type of document that the workbench opens.
struct DocumentType
{
    QString id; ///< "testplan", "schematic" or "script", as on the command line
    QString name; ///< name of one document: "Test plan", "Schematic", "Script"
    QString pluralName; ///< name of several: "Test plans"
    QString extension; ///< extension of the files, with the dot
    int fileType; ///< value of `ZvContentWidget::fileType`; 0 if that has none for the type
    /// Creates a document, which is called \p title until it has a file. \p parent owns it.
    Document* (*make)(const QString& title, QWidget* parent);
};

/// Adds a type, which must exist as long as the application. Does nothing if the type has been
/// added before.
void addDocumentType(const DocumentType& type);

/// Returns all types that have been added, in the order of the menu "New".
const std::vector<const DocumentType*>& documentTypes();

/// Returns the type with the id \p id, or nullptr.
const DocumentType* documentTypeOf(const QString& id);

/// Returns the type of files with the extension of \p file, compared without case, or nullptr.
const DocumentType* documentTypeOfFile(const QString& file);

} // namespace workbench
