#pragma once

#include <zvworkbench/Failure.h>

#include <QString>

class QWidget;

namespace workbench {

class Document;
struct DocumentType;

/// Returns the type that a file is opened as: by its extension, a test plan for CSV, or else a text file if its
/// beginning looks like one. Returns nullptr for other files, and for what is no file: reading a pipe or a device
/// might never end.
const DocumentType* typeToOpen(const QString& file);

/// Returns the path of the file that \p document shows, or an empty text.
QString shownFile(const Document& document);

/// Returns the extension that the name of \p document's file has to keep: that of its type, or none for a text file
/// that is called otherwise.
QString requiredExtension(const Document& document);

/// Shows the content of a file in \p document. Returns false if it can't be read.
bool loadInto(Document& document, const QString& file);

/// Returns why a file without a type can't be opened here.
Failure reasonNotToOpen(const QString& file);

/// Asks whether the system's program for a file without a type shall open it, and returns at once. A file that isn't
/// there is only told of.
void offerToSystem(QWidget& window, const QString& file);

} // namespace workbench
