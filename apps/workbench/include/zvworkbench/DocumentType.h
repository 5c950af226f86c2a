#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>

#include <vector>

class QWidget;

namespace workbench {

class Document;

/// A type of document that the workbench opens.
struct DocumentType
{
    QString id; ///< as on the command line: "testplan", "schematic", "script"
    QString name; ///< name of one document: "Test plan", "Schematic", "Script"
    QString pluralName; ///< name of several: "Test plans"
    QString extension; ///< extension of the files, with the dot
    /// Creates a document, which is called \p title until it has a file. \p parent owns it. May throw
    /// `std::exception`.
    Document* (*make)(const QString& title, QWidget* parent);
    int fileType = 0; ///< value of `ZvContentWidget::fileType`; 0 if that has none for the type
};

/// Adds a type to the menu "New", the start page, the file dialogs and what the workbench opens.
///
/// A module calls this while it is loaded, before the window exists; the workbench adds its own three in
/// the same way. \p type must exist as long as the application. GUI thread.
///
/// Returns true if the type has been added, now or before. Otherwise it is incomplete, or its id or
/// extension is that of another type: then warns by `qWarning` and returns false.
ZVWORKBENCH_EXPORT bool addDocumentType(const DocumentType& type);

/// Returns all types that have been added, in the order of the menu "New".
ZVWORKBENCH_EXPORT const std::vector<const DocumentType*>& documentTypes();

/// Returns the type with the id \p id, or nullptr.
ZVWORKBENCH_EXPORT const DocumentType* documentTypeOf(const QString& id);

/// Returns the type of files with the extension of \p file, compared without case, or nullptr.
ZVWORKBENCH_EXPORT const DocumentType* documentTypeOfFile(const QString& file);

} // namespace workbench
