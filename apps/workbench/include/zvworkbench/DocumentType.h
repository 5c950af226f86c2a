#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>

#include <vector>

class QWidget;

namespace workbench {

class Document;

/// A type of document that the workbench opens.
/// @since 0.2 @ingroup workbench
struct DocumentType
{
    QString id; ///< as on the command line: "testplan", "schematic", "script", "text"
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
/// A module calls this while it is loaded, before the window exists; the workbench adds its own four in
/// the same way. GUI thread.
///
/// A type that is incomplete, or whose id or extension is that of another one, isn't added, of which
/// `qWarning` warns.
/// @param type must exist as long as the application
/// @return whether the type has been added, now or before
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT bool addDocumentType(const DocumentType& type);

/// @return all types that have been added, in the order of the menu "New".
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT const std::vector<const DocumentType*>& documentTypes();

/// Finds a type by its id.
/// @param id compared exactly
/// @return the type, or nullptr
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT const DocumentType* documentTypeOf(const QString& id);

/// Finds the type of a file by its extension.
/// @param file a name or a path; case doesn't count
/// @return the type, or nullptr
/// @since 0.2 @ingroup workbench
ZVWORKBENCH_EXPORT const DocumentType* documentTypeOfFile(const QString& file);

} // namespace workbench
