#include <zvutil/ZvBasicXMLSaveFile.h>

#include "impl/xml/basic_qt_xml_save_file.h"

#include <memory>
#include <string>

using zvutil::experimental::xml::basic_abstract_xml_document_writer;
using zvutil::experimental::xml::basic_qt_xml_save_file;

template <typename C>
struct ZvBasicXMLSaveFile<C>::ZvBasicXMLSaveFileImpl
{
    // The struct has no member functions, since these would be exported along with the class.
    std::shared_ptr<basic_qt_xml_save_file<C>> file;
};

template <typename C>
ZvBasicXMLSaveFile<C>::ZvBasicXMLSaveFile(const zvutil::ZvFilePath& path)
    : m_impl(std::make_unique<ZvBasicXMLSaveFileImpl>())
{
    m_impl.impl().file = std::make_shared<basic_qt_xml_save_file<C>>(std::wstring(path.c_str()));
}

template <typename C>
ZvBasicXMLSaveFile<C>::ZvBasicXMLSaveFile(const ZvBasicXMLSaveFile& other)
    : m_impl(std::make_unique<ZvBasicXMLSaveFileImpl>(other.m_impl.impl()))
{
}

template <typename C>
ZvBasicXMLSaveFile<C>& ZvBasicXMLSaveFile<C>::operator=(const ZvBasicXMLSaveFile& other)
{
    m_impl = zvutil::basic_pimpl(std::make_unique<ZvBasicXMLSaveFileImpl>(other.m_impl.impl()));
    return *this;
}

template <typename C>
ZvBasicXMLSaveFile<C>::~ZvBasicXMLSaveFile() = default;

template <typename C>
bool ZvBasicXMLSaveFile<C>::commit()
{
    return m_impl.impl().file->commit();
}

template <typename C>
void ZvBasicXMLSaveFile<C>::cancelWriting()
{
    m_impl.impl().file->cancel_writing();
}

template <typename C>
basic_abstract_xml_document_writer<C>& ZvBasicXMLSaveFile<C>::writer()
{
    return *m_impl.impl().file;
}

template class ZVUTIL_TEMPLATE_DEFINE ZvBasicXMLSaveFile<char>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicXMLSaveFile<char16_t>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicXMLSaveFile<char32_t>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicXMLSaveFile<wchar_t>;
