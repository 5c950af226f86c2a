#include "impl/xml/basic_qt_xml_save_file.h"

#include "base/file_safety.h"
#include "impl/xml/save_device.h"
#include "impl/xml/shared_file.h"

#include <utility>

namespace zvutil::experimental::xml {

namespace {

std::shared_ptr<QIODevice> opened(const std::shared_ptr<QSaveFile>& file)
{
    // Open without the text flag: the bytes are the writer's. A failure shows in commit().
    zvutil::base::open_safely(*file);
    return std::make_shared<zvutil::impl::save_device>(file);
}

} // namespace

template <typename C>
basic_qt_xml_save_file<C>::basic_qt_xml_save_file(std::shared_ptr<QSaveFile> file)
    : basic_qt_stream_xml_document_writer<C>(opened(file))
    , m_file(std::move(file))
{
}

template <typename C>
basic_qt_xml_save_file<C>::basic_qt_xml_save_file(const std::wstring& path)
    : basic_qt_xml_save_file(zvutil::impl::shared_file<QSaveFile>(path))
{
}

template <typename C>
basic_qt_xml_save_file<C>::~basic_qt_xml_save_file() = default;

template <typename C>
bool basic_qt_xml_save_file<C>::commit()
{
    // Check first: Qt warns when a file is committed that isn't open.
    return m_file->isOpen() && m_file->commit();
}

template <typename C>
void basic_qt_xml_save_file<C>::cancel_writing()
{
    m_file->cancelWriting();
}

template class basic_qt_xml_save_file<char>;
template class basic_qt_xml_save_file<char16_t>;
template class basic_qt_xml_save_file<char32_t>;
template class basic_qt_xml_save_file<wchar_t>;

} // namespace zvutil::experimental::xml
