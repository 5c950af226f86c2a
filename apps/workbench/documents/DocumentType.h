#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace workbench {

class Document;

/// A type of document that the workbench opens.
struct DocumentType
{
    QString id; ///< "testplan", "schematic" or "script", as the command line has it
    QString name; ///< what one is called: "Test plan", "Schematic", "Script"
    QString extension; ///< of its files, with the dot
    int fileType; ///< as `ZvContentWidget::fileType` wants it; 0 where that knows none
    /// Makes a new document, which \p title names until it has a file. \p parent owns it.
    Document* (*make)(const QString& title, QWidget* parent);
};

/// Adds a type, which must live as long as the application. Does nothing if it is there already.
void addDocumentType(const DocumentType& type);

/// All types that have been added, in the order of the menu "New".
const std::vector<const DocumentType*>& documentTypes();

/// The type of that id, or nullptr.
const DocumentType* documentTypeOf(const QString& id);

/// The type of files with the extension of \p file, in any case, or nullptr.
const DocumentType* documentTypeOfFile(const QString& file);

} // namespace workbench
