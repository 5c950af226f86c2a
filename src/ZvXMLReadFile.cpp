#include <zvutil/ZvXMLReadFile.h>

#include "impl/xml/qt_xml_read_file.h"

#include <memory>
#include <string>

using zvutil::experimental::xml::abstract_xml_document_reader;
using zvutil::experimental::xml::qt_xml_read_file;

struct ZvXMLReadFile::ZvXMLReadFileImpl
{
    explicit ZvXMLReadFileImpl(const zvutil::ZvFilePath& path)
        : file(std::make_shared<qt_xml_read_file>(std::wstring(path.c_str())))
    {
    }

    std::shared_ptr<qt_xml_read_file> file;
};

ZvXMLReadFile::ZvXMLReadFile(const zvutil::ZvFilePath& path)
    : m_impl(std::make_unique<ZvXMLReadFileImpl>(path))
{
}

ZvXMLReadFile::~ZvXMLReadFile() = default;

abstract_xml_document_reader& ZvXMLReadFile::reader()
{
    return *m_impl.impl().file;
}
