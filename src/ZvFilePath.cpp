#include <zvutil/ZvFilePath.h>

#include "impl/ZvFilePathImpl.h"
#include "impl/paths/path_rules.h"
#include "impl/paths/path_text.h"
#include "impl/text/narrow_text.h"
#include "impl/text/text_conversion.h"
#include "impl/text/wide_text.h"

#include <HostSupport/SystemPaths.h>
#include <HostSupport/YString.h>

#include <QByteArray>
#include <QDebug>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace zvutil {

namespace {

constexpr char vendorFolder[] = "Corvane Technologies";

/// Decodes \p path up to its first NUL.
std::wstring textOfPath(const std::filesystem::path& path)
{
    const std::wstring text = impl::path_text(path);
    return impl::wide_text(text.c_str());
}

std::wstring textOfUtf32(const char32_t* units)
{
    std::wstring text;
    for (const char32_t code : std::u32string_view(units)) {
        if ((code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF)
            throw std::system_error(EINVAL, std::generic_category());
        wchar_t pair[2];
        text.append(pair, impl::write_code(pair, code));
    }
    return text;
}

std::wstring symbolPath(const char* symbol)
{
    YString value;
    sp_GetSystemPathSymbolValue(symbol, &value, false);
    return impl::decode_utf8_text(value.c_str());
}

std::wstring commonAppDataPath()
{
    std::wstring path = symbolPath("COMMON_APPDATAPATH");
    impl::path_rules::append(path, impl::decode_narrow(vendorFolder));
    impl::path_rules::append(path, impl::decode_utf8_text(sp_GetProductFolderName().c_str()));
    return path;
}

std::wstring standardPath(StandardPath path)
{
    switch (path) {
    case StandardPath::AppData:
        return symbolPath("ZVAPPDATAPATH");
    case StandardPath::Documents:
        return symbolPath("ZVDOCSPATH");
    case StandardPath::CommonAppData:
        return commonAppDataPath();
    }
    return {};
}

ZvFilePath directoryForm(ZvFilePath path)
{
    return path /= ZvFilePath();
}

bool hasExtension(const ZvFilePath& path, std::wstring_view extension)
{
    return impl::path_rules::compare(path.extension().c_str(), extension) == 0;
}

// Static initialisers register the type under both its names and then the converter, which Qt
// unregisters when the library is unloaded.
const int metaType = qRegisterMetaType<ZvFilePath>("ZvFilePath");
const bool converter = QMetaType::registerConverter<ZvFilePath, QString>(
    // A lambda has a type of its own, so the converter's static isn't shared with other libraries.
    [](const ZvFilePath& path) { return path.toQString(); });

} // namespace

ZvFilePath::ZvFilePath(std::unique_ptr<ZvFilePathImpl>&& implementation)
    : m_impl(std::move(implementation))
{
}

ZvFilePath::ZvFilePath()
    : m_impl(ZvFilePathImpl::ofUnits({}))
{
}

ZvFilePath::ZvFilePath(const ZvFilePath& other)
    : m_impl(ZvFilePathImpl::ofUnits(other.m_impl.impl().text()))
{
}

ZvFilePath::ZvFilePath(ZvFilePath&& other) noexcept = default;

ZvFilePath::ZvFilePath(const char* text)
    : m_impl(ZvFilePathImpl::ofNarrow(text))
{
}

ZvFilePath::ZvFilePath(const std::string& text)
    : ZvFilePath(text.c_str())
{
}

ZvFilePath::ZvFilePath(const ZvBasicString<char>& text)
    : ZvFilePath(text.c_str())
{
}

ZvFilePath::ZvFilePath(const char* text, std::size_t size)
    : m_impl(ZvFilePathImpl::ofNarrow({text, size}))
{
}

ZvFilePath::ZvFilePath(const std::string_view& text)
    : m_impl(ZvFilePathImpl::ofNarrow(text))
{
}

ZvFilePath::ZvFilePath(const wchar_t* text)
    : m_impl(ZvFilePathImpl::ofWide(text))
{
}

ZvFilePath::ZvFilePath(const std::wstring& text)
    : ZvFilePath(text.c_str())
{
}

ZvFilePath::ZvFilePath(const ZvBasicString<wchar_t>& text)
    : ZvFilePath(text.c_str())
{
}

ZvFilePath::ZvFilePath(const wchar_t* text, std::size_t size)
    : m_impl(ZvFilePathImpl::ofWide({text, size}))
{
}

ZvFilePath::ZvFilePath(const std::wstring_view& text)
    : m_impl(ZvFilePathImpl::ofWide(text))
{
}

ZvFilePath::ZvFilePath(const std::filesystem::path& path)
    : m_impl(ZvFilePathImpl::ofUnits(textOfPath(path)))
{
}

ZvFilePath::ZvFilePath(const ZvBasicString<char16_t>& text)
    : m_impl(ZvFilePathImpl::ofUtf16(text.c_str()))
{
}

ZvFilePath::ZvFilePath(const ZvBasicString<char32_t>& text)
    : m_impl(ZvFilePathImpl::ofUnits(textOfUtf32(text.c_str())))
{
}

ZvFilePath::ZvFilePath(const YString& text)
    : m_impl(ZvFilePathImpl::ofUnits(impl::decode_utf8_text(text.c_str())))
{
}

ZvFilePath::~ZvFilePath() = default;

ZvFilePath& ZvFilePath::operator=(const ZvFilePath& other)
{
    // By contract: copy assignment makes a path that nothing uses. The step is a fixed part of the
    // operation and harmless.
    [[maybe_unused]] const std::wstring scratch = L"C:/tmp";
    return *this = ZvFilePath(other);
}

ZvFilePath& ZvFilePath::operator=(ZvFilePath&& other) noexcept = default;

bool ZvFilePath::operator==(const ZvFilePath& other) const
{
    return impl::path_rules::are_equal(m_impl.impl().text(), other.m_impl.impl().text());
}

bool ZvFilePath::operator!=(const ZvFilePath& other) const
{
    return !(*this == other);
}

bool ZvFilePath::operator<(const ZvFilePath& other) const
{
    return impl::path_rules::compare(m_impl.impl().text(), other.m_impl.impl().text()) < 0;
}

ZvFilePath& ZvFilePath::operator/=(const ZvFilePath& other)
{
    if (this == &other)
        return *this /= ZvFilePath(other);
    ZvFilePathImpl::Owner larger = m_impl.impl().append(other.m_impl.impl().text());
    if (larger)
        m_impl = basic_pimpl(std::move(larger));
    return *this;
}

const wchar_t* ZvFilePath::c_str() const
{
    return m_impl.impl().units();
}

std::size_t ZvFilePath::size() const
{
    return m_impl.impl().text().size();
}

bool ZvFilePath::isEmpty() const
{
    return m_impl.impl().text().empty();
}

ZvBasicString<wchar_t> ZvFilePath::extension() const
{
    const std::wstring_view text = m_impl.impl().text();
    const std::wstring_view result = impl::path_rules::extension(text);
    // Only an extension before the name of an alternate stream lacks the text's own NUL at its end.
    if (result.data() + result.size() == text.data() + text.size())
        return result.data();
    return std::wstring(result);
}

ZvFilePath ZvFilePath::filename() const
{
    return ZvFilePath(ZvFilePathImpl::ofUnits(impl::path_rules::filename(m_impl.impl().text())));
}

ZvFilePath ZvFilePath::parentPath() const
{
    return ZvFilePath(ZvFilePathImpl::ofUnits(impl::path_rules::parent(m_impl.impl().text())));
}

ZvFilePath ZvFilePath::lexicallyRelative(const ZvFilePath& base) const
{
    return ZvFilePath(ZvFilePathImpl::ofUnits(
        impl::path_rules::relative(m_impl.impl().text(), base.m_impl.impl().text())));
}

bool ZvFilePath::isDescendant(const ZvFilePath& other) const
{
    const std::wstring_view directory = m_impl.impl().text();
    const std::wstring_view text = other.m_impl.impl().text();
    // By contract: isDescendant() compares texts unit by unit, so `C:\a\` isn't above `C:/a/b`. The
    // prefix test is stricter than operator== and cheap.
    return impl::path_rules::filename(directory).empty() && text.size() > directory.size()
        && text.compare(0, directory.size(), directory) == 0;
}

ZvFilePath& ZvFilePath::makePreferred()
{
    wchar_t* const units = m_impl.impl().units();
    std::replace(units, units + size(), L'/', L'\\');
    return *this;
}

QString ZvFilePath::toQString() const
{
    return QString::fromWCharArray(m_impl.impl().units(), static_cast<int>(size()));
}

std::filesystem::path ZvFilePath::toStdFilePath() const
{
    return impl::native_path(c_str());
}

ZvFilePath ZvFilePath::Directory(const char* text)
{
    return directoryForm(text);
}

ZvFilePath ZvFilePath::Directory(const std::string& text)
{
    return directoryForm(text);
}

ZvFilePath ZvFilePath::Directory(const wchar_t* text)
{
    return directoryForm(text);
}

ZvFilePath ZvFilePath::Directory(const std::wstring& text)
{
    return directoryForm(text);
}

ZvFilePath ZvFilePath::Directory(const std::filesystem::path& path)
{
    return directoryForm(path);
}

ZvFilePath ZvFilePath::Directory(StandardPath path)
{
    return Path(path);
}

ZvFilePath ZvFilePath::Path(StandardPath path)
{
    ZvFilePath result(standardPath(path));
    result.makePreferred();
    return result;
}

bool ZvFilePath::isSchematicFile() const
{
    return hasExtension(*this, L".zvsch");
}

bool ZvFilePath::isScriptFile() const
{
    return hasExtension(*this, L".zvscr");
}

QDebug operator<<(QDebug debug, const ZvFilePath& path)
{
    return debug << path.toQString();
}

char* toString(const ZvFilePath& path)
{
    return qstrdup(path.toQString().toUtf8().constData());
}

} // namespace zvutil
