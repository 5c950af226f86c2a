#pragma once

#include <zvworkbench/FileError.h>

#include <zvutil/ZvFilePath.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>

#include <QString>

#include <functional>

namespace workbench {

using XmlElement = zvutil::experimental::xml::abstract_xml_element_reader;

/// Returns whether \p element exists and is called \p name.
bool isElement(const XmlElement* element, const char* name);

/// Returns the value of an attribute. Throws `FileError` if there is no such attribute.
QString textAttribute(const XmlElement& element, const char* name);
/// Returns the value of an attribute as a number. Throws `FileError` if there is no such attribute,
/// or its value isn't a whole number from \p min to \p max.
int numberAttribute(const XmlElement& element, const char* name, int min, int max);

/// Throws `FileError` if \p root isn't the root of such a document, or has a version that is newer
/// than this program reads. \p what is what such a document is called within a sentence.
void requireRoot(const XmlElement* root, const char* name, const QString& what);

/// Returns the index of the first character that XML doesn't allow, or -1. The XML writer leaves
/// such characters out.
int unwritableCharacter(const QString& text);
/// Throws `FileError` if \p text contains a character that XML doesn't allow. \p where returns the
/// beginning of the message: the place of the text.
void requireWritable(const QString& text, const std::function<QString()>& where);

/// Throws `FileError` with the likely cause unless \p isWritten.
void requireWritten(bool isWritten, const zvutil::ZvFilePath& file);

} // namespace workbench
