// Prints the sizes of the handles, which are part of the interface.

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

#include <cstdio>

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
    return 0;
}
