#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>
#include <zvutil/impl/template_export.h>

/// An XML file to write, in UTF-8 for `char`, UTF-16 for `char16_t` and `wchar_t`, UTF-32 for
/// `char32_t`. A class of the application derives from it and writes the document in its own methods.
///
/// Saving is atomic: all is written into a temporary file beside the target, and `commit` puts it in
/// the target's place in one step. Without `commit` the target stays as it was, byte for byte, and
/// the temporary file is removed by the event loop of the thread that has made this object. If the
/// target is a symbolic link, the file that it leads to is replaced and the link stays.
///
/// Copies are handles on one and the same file with its open elements; the first `commit` or
/// `cancelWriting` of any of them decides. They may be destroyed on different threads, but not used
/// at the same time.
///
/// A relative path is looked up twice: by the constructor for the temporary file, and by `commit` in
/// the directory that is current then, where it moves the file. So a program that changes its current
/// directory between them uses absolute paths.
///
/// Nothing is thrown for a target that can't be written: `commit` returns false.
///
/// @code{.cpp}
/// #include <map>
/// #include <string>
///
/// class SettingsWriter : public ZvBasicXMLSaveFile<char>
/// {
/// public:
///     using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;
///
///     bool save(const std::map<std::string, std::string>& settings)
///     {
///         write(settings); // destroys all element writers before it returns
///         return commit();
///     }
///
/// private:
///     void write(const std::map<std::string, std::string>& settings)
///     {
///         const auto root = writer().root_element("settings");
///         for (const auto& [name, value] : settings) {
///             const auto setting = root->child("setting");
///             setting->attribute("name", name.c_str());
///             setting->text(value.c_str());
///         }
///     }
/// };
/// @endcode
/// @since 0.1 @ingroup xml
template <typename C>
class ZvBasicXMLSaveFile
{
public:
    /// Opens a temporary file beside the target and writes the XML declaration. Does not throw if
    /// that fails.
    /// @param path the target, which need not exist
    ZvBasicXMLSaveFile(const zvutil::ZvFilePath& path);
    /// A second handle on the same file, with its open elements.
    /// @param other stays a handle as it is
    ZvBasicXMLSaveFile(const ZvBasicXMLSaveFile& other);
    /// Makes this a handle on the other's file, and gives up the one held before unless another
    /// handle commits it.
    /// @param other stays a handle as it is
    ZvBasicXMLSaveFile& operator=(const ZvBasicXMLSaveFile& other);
    /// Releases this handle; the last one gives the save up unless it was committed.
    virtual ~ZvBasicXMLSaveFile();

    /// Replaces the target. An element that is still open doesn't get its end tag into the file, so
    /// destroy all element writers before.
    /// @return false after any error since the file was opened, after `cancelWriting` and when
    /// called again; in all these cases nothing has been changed. This is the only report of a
    /// failure.
    [[nodiscard]] bool commit();

    /// Gives the save up: `commit` fails from then on. More can be written, and is lost.
    void cancelWriting();

protected:
    /// @return the document, to write the root element with; valid as long as any handle on the
    /// file.
    zvutil::experimental::xml::basic_abstract_xml_document_writer<C>& writer();

private:
    struct ZvBasicXMLSaveFileImpl;

    zvutil::basic_pimpl<ZvBasicXMLSaveFileImpl> m_impl;
};

extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicXMLSaveFile<char>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicXMLSaveFile<char16_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicXMLSaveFile<char32_t>;
extern template class ZVUTIL_TEMPLATE_DECLARE ZvBasicXMLSaveFile<wchar_t>;

static_assert(sizeof(ZvBasicXMLSaveFile<char>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicXMLSaveFile<char16_t>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicXMLSaveFile<char32_t>) == 3 * sizeof(void*));
static_assert(sizeof(ZvBasicXMLSaveFile<wchar_t>) == 3 * sizeof(void*));
