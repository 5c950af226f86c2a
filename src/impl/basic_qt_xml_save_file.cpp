#include "impl/basic_qt_xml_save_file.h"

#include "impl/shared_file.h"

#include <utility>

namespace zvutil::experimental::xml {

namespace {

const std::shared_ptr<QSaveFile>& opened(const std::shared_ptr<QSaveFile>& file)
{
    // Without a text flag: the bytes are the writer's. If this fails, commit tells.
    file->open(QIODevice::WriteOnly);
    return file;
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
    // Qt doesn't notice if the last block, which waits to be written, finds no space on the disk.
    if (m_file->isOpen() && !m_file->flush())
        m_file->cancelWriting();
    return m_file->commit();
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
