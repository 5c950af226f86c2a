#pragma once

#include "impl/xml/qt_stream_xml_document_reader.h"

#include <QFile>

#include <memory>
#include <string>

namespace zvutil::experimental::xml {

/// A document in a file. A file that can't be opened has no elements; its maker can check it.
class qt_xml_read_file : public qt_stream_xml_document_reader
{
public:
    /// Opens \p file for reading and shares it with its element readers.
    explicit qt_xml_read_file(std::shared_ptr<QFile> file);
    /// Reads the file at the path \p path. The event loop closes the file after the last element
    /// was destroyed.
    explicit qt_xml_read_file(const std::wstring& path);
    ~qt_xml_read_file() override;
};

} // namespace zvutil::experimental::xml
