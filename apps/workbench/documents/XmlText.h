#pragma once

#include "documents/FileError.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>

#include <QString>

#include <functional>

namespace workbench {

using XmlElement = zvutil::experimental::xml::abstract_xml_element_reader;

/// Whether there is such an element and it is called \p name.
bool isElement(const XmlElement* element, const char* name);

/// The value of an attribute. Throws `FileError` if there is none.
QString textAttribute(const XmlElement& element, const char* name);
/// The same, which has to be a whole number from \p least to \p most.
int numberAttribute(const XmlElement& element, const char* name, int least, int most);

/// Throws `FileError` if \p root isn't the root of such a document, or one of a version that is newer
/// than this program. \p what is what such a document is called within a sentence.
void requireRoot(const XmlElement* root, const char* name, const QString& what);

/// The place of the first character that XML doesn't allow, or -1. The writer leaves such ones out.
int unwritableCharacter(const QString& text);
/// Throws `FileError` if \p text has one. \p where gives the beginning of the sentence that tells of it.
void requireWritable(const QString& text, const std::function<QString()>& where);

/// Throws `FileError` with what may be the cause, if \p file wasn't written.
void requireWritten(bool isWritten, const zvutil::ZvFilePath& file);

} // namespace workbench
