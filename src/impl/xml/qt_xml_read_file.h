#pragma once

#include "impl/xml/qt_stream_xml_document_reader.h"

#include <QFile>

#include <memory>
#include <string>

namespace zvutil::experimental::xml {

/// A document in a file. A file that can't be opened has no elements; whoever has made it can ask it.
class qt_xml_read_file : public qt_stream_xml_document_reader
{
public:
    /// Opens \p file for reading and shares it with its element readers.
    explicit qt_xml_read_file(std::shared_ptr<QFile> file);
    /// Takes the text of a path. The event loop closes the file when the last element has gone.
    explicit qt_xml_read_file(const std::wstring& path);
    ~qt_xml_read_file() override;
};

} // namespace zvutil::experimental::xml
