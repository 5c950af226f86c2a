#pragma once

#include "impl/xml/basic_qt_stream_xml_document_writer.h"

#include <QSaveFile>

#include <memory>
#include <string>

namespace zvutil::experimental::xml {

/// A document in a temporary file that replaces its target when it is committed.
template <typename C>
class basic_qt_xml_save_file : public basic_qt_stream_xml_document_writer<C>
{
public:
    /// Opens \p file, shares it with its element writers and writes the XML declaration.
    explicit basic_qt_xml_save_file(std::shared_ptr<QSaveFile> file);
    /// Saves to the path \p path. When the last element was destroyed, the event loop closes the
    /// file and removes it if it wasn't committed.
    explicit basic_qt_xml_save_file(const std::wstring& path);
    ~basic_qt_xml_save_file() override;

    /// Replaces the target. Returns false after any error since the file was opened; the target is
    /// unchanged then.
    bool commit();
    void cancel_writing() override;

private:
    std::shared_ptr<QSaveFile> m_file;
};

extern template class basic_qt_xml_save_file<char>;
extern template class basic_qt_xml_save_file<char16_t>;
extern template class basic_qt_xml_save_file<char32_t>;
extern template class basic_qt_xml_save_file<wchar_t>;

} // namespace zvutil::experimental::xml
