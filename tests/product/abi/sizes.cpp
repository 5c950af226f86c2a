// Prints the sizes of the handles and the places of the virtual operations, which are part of the interface.

#include <zvutil/ModelTest.h>
#include <zvutil/ZvAbstractIterativeProcess.h>
#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvChildProxyModel.h>
#include <zvutil/ZvClipboard.h>
#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvCompression.h>
#include <zvutil/ZvContentWidget.h>
#include <zvutil/ZvEditorStyle.h>
#include <zvutil/ZvException.h>
#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>
#include <zvutil/ZvNamedColour.h>
#include <zvutil/ZvNamedIcon.h>
#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvProgressLineEdit.h>
#include <zvutil/ZvResponsiveImage.h>
#include <zvutil/ZvSearchBar.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/ZvStyleModel.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvURI.h>
#include <zvutil/ZvUUID.h>
#include <zvutil/ZvVariant.h>
#include <zvutil/ZvWString.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/basic_pimpl.h>
#include <zvutil/experimental/unique_destroyable_ptr.h>
#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>
#include <zvutil/libzvutil/background_impl.h>
#include <zvutil/stop_source.h>
#include <zvutil/uri.h>
#include <zvutil/uuid.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

namespace xml = zvutil::experimental::xml;

/// The place of a virtual operation in the table of its class. By the rules of GCC and Clang a pointer
/// to it is the distance in bytes from the first, and 1.
template <typename Operation>
std::size_t placeOf(Operation operation)
{
    std::uintptr_t words[2];
    static_assert(sizeof(operation) == sizeof(words));
    std::memcpy(words, &operation, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

struct Process : ZvAbstractIterativeProcess
{
    using ZvAbstractIterativeProcess::reportStatus;
};

struct Request : zvutil::libzvutil::abstract_request
{
    using abstract_request::perform;
};

struct Content : ZvContentWidget
{
    using ZvContentWidget::requestSavePath;
};

void printPlaces()
{
    using ElementReader = xml::abstract_xml_element_reader;
    using DocumentReader = xml::abstract_xml_document_reader;
    using ElementWriter = xml::basic_abstract_xml_element_writer<char>;
    using DocumentWriter = xml::basic_abstract_xml_document_writer<char>;
    using Attribute = void (ElementWriter::*)(const char*, const char*);
    using SizedAttribute = void (ElementWriter::*)(const char*, const char*, int);
    const struct
    {
        const char* name;
        std::size_t place;
    } operations[] = {
        {"ZvAbstractIterativeProcess::hasMoreWork",
         placeOf(&ZvAbstractIterativeProcess::hasMoreWork)},
        {"ZvAbstractIterativeProcess::processStep",
         placeOf(&ZvAbstractIterativeProcess::processStep)},
        {"ZvAbstractIterativeProcess::reportStatus", placeOf(&Process::reportStatus)},
        {"abstract_request::abort", placeOf(&zvutil::libzvutil::abstract_request::abort)},
        {"abstract_request::perform", placeOf(&Request::perform)},
        {"abstract_response::wait", placeOf(&zvutil::libzvutil::abstract_response::wait)},
        {"ZvContentWidget::fileType", placeOf(&ZvContentWidget::fileType)},
        {"ZvContentWidget::menuName", placeOf(&ZvContentWidget::menuName)},
        {"ZvContentWidget::closeEventText", placeOf(&ZvContentWidget::closeEventText)},
        {"ZvContentWidget::documentTypeName", placeOf(&ZvContentWidget::documentTypeName)},
        {"ZvContentWidget::writeFile", placeOf(&ZvContentWidget::writeFile)},
        {"ZvContentWidget::requestSavePath", placeOf(&Content::requestSavePath)},
        {"abstract_xml_element_reader::destroy", placeOf(&ElementReader::destroy)},
        {"abstract_xml_element_reader::name", placeOf(&ElementReader::name)},
        {"abstract_xml_element_reader::attribute", placeOf(&ElementReader::attribute)},
        {"abstract_xml_element_reader::text", placeOf(&ElementReader::text)},
        {"abstract_xml_element_reader::next_child", placeOf(&ElementReader::next_child)},
        {"abstract_xml_document_reader::next_element", placeOf(&DocumentReader::next_element)},
        {"abstract_xml_document_reader::root_element", placeOf(&DocumentReader::root_element)},
        {"basic_abstract_xml_element_writer::destroy", placeOf(&ElementWriter::destroy)},
        {"basic_abstract_xml_element_writer::child", placeOf(&ElementWriter::child)},
        {"basic_abstract_xml_element_writer::attribute, sized",
         placeOf(static_cast<SizedAttribute>(&ElementWriter::attribute))},
        {"basic_abstract_xml_element_writer::attribute",
         placeOf(static_cast<Attribute>(&ElementWriter::attribute))},
        {"basic_abstract_xml_element_writer::text", placeOf(&ElementWriter::text)},
        {"basic_abstract_xml_document_writer::root_element",
         placeOf(&DocumentWriter::root_element)},
        {"basic_abstract_xml_document_writer::cancel_writing",
         placeOf(&DocumentWriter::cancel_writing)},
    };
    for (const auto& operation : operations)
        std::printf("place of %s: %zu\n", operation.name, operation.place);
}

} // namespace

int main()
{
    const struct
    {
        const char* name;
        std::size_t size;
    } handles[] = {
        {"ModelTest", sizeof(ModelTest)},
        {"ZvChildProxyModel", sizeof(ZvChildProxyModel)},
        {"ZvClipboard", sizeof(ZvClipboard)},
        {"ZvClipboardData", sizeof(ZvClipboardData)},
        {"ZvCompression", sizeof(ZvCompression)},
        {"ZvContentWidget", sizeof(ZvContentWidget)},
        {"ZvMultiDirectoryListModel", sizeof(ZvMultiDirectoryListModel)},
        {"ZvProcessingIndicator", sizeof(ZvProcessingIndicator)},
        {"ZvProgressLineEdit", sizeof(ZvProgressLineEdit)},
        {"ZvResponsiveImage", sizeof(ZvResponsiveImage)},
        {"ZvSearchBar", sizeof(ZvSearchBar)},
        {"ZvTable", sizeof(ZvTable)},
        {"ZvURI", sizeof(ZvURI)},
        {"libzvutil::ZvEditorStyle", sizeof(libzvutil::ZvEditorStyle)},
        {"libzvutil::ZvNamedColour", sizeof(libzvutil::ZvNamedColour)},
        {"libzvutil::ZvNamedIcon", sizeof(libzvutil::ZvNamedIcon)},
        {"libzvutil::ZvString", sizeof(libzvutil::ZvString)},
        {"libzvutil::ZvStyle", sizeof(libzvutil::ZvStyle)},
        {"libzvutil::ZvStyleEditor", sizeof(libzvutil::ZvStyleEditor)},
        {"libzvutil::ZvStyleLibrary", sizeof(libzvutil::ZvStyleLibrary)},
        {"libzvutil::ZvStyleManager", sizeof(libzvutil::ZvStyleManager)},
        {"libzvutil::ZvStyleModel", sizeof(libzvutil::ZvStyleModel)},
        {"libzvutil::ZvVariant", sizeof(libzvutil::ZvVariant)},
        {"libzvutil::ZvWString", sizeof(libzvutil::ZvWString)},
        {"zvutil::basic_pimpl<T>", sizeof(zvutil::basic_pimpl<int>)},
        {"zvutil::uri", sizeof(zvutil::uri)},
        {"zvutil::ZvBasicString<char>", sizeof(zvutil::ZvBasicString<char>)},
        {"zvutil::ZvBasicString<char16_t>", sizeof(zvutil::ZvBasicString<char16_t>)},
        {"zvutil::ZvBasicString<char32_t>", sizeof(zvutil::ZvBasicString<char32_t>)},
        {"zvutil::ZvBasicString<wchar_t>", sizeof(zvutil::ZvBasicString<wchar_t>)},
        {"zvutil::ZvException", sizeof(zvutil::ZvException)},
        {"zvutil::ZvFileException", sizeof(zvutil::ZvFileException)},
        {"zvutil::ZvFilePath", sizeof(zvutil::ZvFilePath)},
        {"zvutil::ZvUUID", sizeof(zvutil::ZvUUID)},
        {"zvutil::experimental::unique_destroyable_ptr<T>",
         sizeof(zvutil::experimental::unique_destroyable_ptr<int>)},
        {"ZvXMLReadFile", sizeof(ZvXMLReadFile)},
        {"ZvBasicXMLSaveFile<char>", sizeof(ZvBasicXMLSaveFile<char>)},
        {"ZvBasicXMLSaveFile<char16_t>", sizeof(ZvBasicXMLSaveFile<char16_t>)},
        {"ZvBasicXMLSaveFile<char32_t>", sizeof(ZvBasicXMLSaveFile<char32_t>)},
        {"ZvBasicXMLSaveFile<wchar_t>", sizeof(ZvBasicXMLSaveFile<wchar_t>)},
        {"zvutil::stop_source", sizeof(zvutil::stop_source)},
        {"zvutil::stop_token", sizeof(zvutil::stop_token)},
        {"zvutil::details::stop_source_impl", sizeof(zvutil::details::stop_source_impl)},
        {"zvutil::libzvutil::GenericTrigger", sizeof(zvutil::libzvutil::GenericTrigger)},
        {"zvutil::libzvutil::abstract_request", sizeof(zvutil::libzvutil::abstract_request)},
        {"zvutil::libzvutil::abstract_response", sizeof(zvutil::libzvutil::abstract_response)},
        {"zvutil::libzvutil::BackgroundRequestManager",
         sizeof(zvutil::libzvutil::BackgroundRequestManager)},
        {"zvutil::libzvutil::background_impl", sizeof(zvutil::libzvutil::background_impl)},
        {"ZvAbstractIterativeProcess", sizeof(ZvAbstractIterativeProcess)},
    };
    for (const auto& handle : handles)
        std::printf("sizeof(%s) == %zu\n", handle.name, handle.size);
    printPlaces();
    return 0;
}
