#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/experimental/xml/abstract_xml_document_reader.h>
#include <zvutil/zvutil_export.h>

/// An XML file to read, in any encoding that its declaration names. A class of the application
/// derives from it and walks the document in its own methods.
///
/// A file that is missing or can't be read is no error: it has no root element. The file stays open
/// until this object and all element readers are destroyed and the event loop of the thread that
/// made it has run after that. Code that writes the same path right after reading has to allow for
/// that. **Code that reads many files has to let the event loop run between them**: on systems that
/// limit the number of open files of a process, often to 1024, all files beyond that limit seem to
/// be empty.
///
/// A relative path is looked up in the directory that is current when this object is made. One thread
/// at a time.
///
/// @code{.cpp}
/// #include <map>
/// #include <string>
/// #include <string_view>
///
/// class SettingsReader : public ZvXMLReadFile
/// {
/// public:
///     using ZvXMLReadFile::ZvXMLReadFile;
///
///     std::map<std::string, std::string> read()
///     {
///         std::map<std::string, std::string> settings;
///         const auto root = reader().root_element();
///         if (!root || std::string_view(root->name()) != "settings")
///             return settings; // no file, or one of another kind
///         while (const auto child = root->next_child()) {
///             const std::string name = child->attribute("name"); // throws if there is none
///             settings[name] = child->text();
///         }
///         return settings;
///     }
/// };
/// @endcode
/// @since 0.1 @ingroup xml
class ZVUTIL_EXPORT ZvXMLReadFile
{
public:
    /// Opens a file; doesn't throw if that fails.
    /// @param path the file, which need not exist
    ZvXMLReadFile(const zvutil::ZvFilePath& path);
    /// A document is read once, by one object.
    ZvXMLReadFile(const ZvXMLReadFile&) = delete;
    /// A document is read once, by one object.
    ZvXMLReadFile& operator=(const ZvXMLReadFile&) = delete;
    /// Releases the file, which is closed once all element readers are destroyed and the event loop
    /// has run.
    virtual ~ZvXMLReadFile();

protected:
    /// @return the document to read; valid as long as this object.
    zvutil::experimental::xml::abstract_xml_document_reader& reader();

private:
    struct ZvXMLReadFileImpl;

    zvutil::basic_pimpl<ZvXMLReadFileImpl> m_impl;
};

static_assert(sizeof(ZvXMLReadFile) == 3 * sizeof(void*));
