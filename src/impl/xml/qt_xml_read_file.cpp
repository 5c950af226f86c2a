#include "impl/xml/qt_xml_read_file.h"

#include "impl/xml/shared_file.h"

#include <utility>

namespace zvutil::experimental::xml {

namespace {

std::shared_ptr<QFile> opened(std::shared_ptr<QFile>&& file)
{
    // Open without the text flag: the bytes are the parser's. After a failure there is nothing to
    // read.
    file->open(QIODevice::ReadOnly);
    return std::move(file);
}

} // namespace

qt_xml_read_file::qt_xml_read_file(std::shared_ptr<QFile> file)
    : qt_stream_xml_document_reader(opened(std::move(file)))
{
}

qt_xml_read_file::qt_xml_read_file(const std::wstring& path)
    : qt_xml_read_file(zvutil::impl::shared_file<QFile>(path))
{
}

qt_xml_read_file::~qt_xml_read_file() = default;

} // namespace zvutil::experimental::xml
