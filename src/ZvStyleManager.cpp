#include <zvutil/ZvStyleManager.h>

#include <zvutil/ZvStyleLibrary.h>

#include "impl/styles/StyleModifier.h"
#include "impl/styles/command_window.h"

#include <HostSupport/ComConstruct.h>
#include <HostSupport/MakeOption.h>
#include <HostSupport/Options.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QString>

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace libzvutil {

using zvutil::StandardPath;
using zvutil::ZvFilePath;

namespace {

constexpr char styleOption[] = "ZvStyle";

COMERROR applyDark(int /*wordCount*/, char** /*words*/, YRef<MessageHandler> /*messages*/,
                   const ScpParseContext& /*context*/)
{
    ZvStyleManager::Library().style("Dark").apply();
    return COM_OK;
}

COMERROR applyLight(int /*wordCount*/, char** /*words*/, YRef<MessageHandler> /*messages*/,
                    const ScpParseContext& /*context*/)
{
    ZvStyleManager::Library().style("Light").apply();
    return COM_OK;
}

COMERROR modifyStyle(int /*wordCount*/, char** /*words*/, YRef<MessageHandler> /*messages*/,
                     const ScpParseContext& /*context*/)
{
    impl::show_command_window(new StyleModifier(nullptr),
                              QCoreApplication::translate("libzvutil", "Style Modifications"));
    return COM_OK;
}

const ComConstruct darkCommand("_s1", &applyDark, 0);
const ComConstruct lightCommand("_s2", &applyLight, 0);
const MakeOption optionRegistration("src\\ZvStyleManager", 13, styleOption, "Light",
                                    OPTION_DEFAULT_CACHING, true);
const ComConstruct modifyCommand("_modifystyle", &modifyStyle, 0);

void makeStyleDirectory()
{
    const std::filesystem::path directory = ZvStyleManager::StyleDirectory().toStdFilePath();
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error)
        throw std::filesystem::filesystem_error("create_directories", directory, error);
}

/// The library's style of the name that \p getName returns, or the light one if either throws.
template <typename GetName>
ZvStyle styleOrLight(const ZvStyleLibrary& library, GetName getName)
{
    try {
        return library.style(getName().c_str());
    } catch (...) {
        return library.light();
    }
}

YString hostStyleName()
{
    YString name;
    // An option that isn't set gives the default that it was declared with.
    sp_ReadOptionsInfo(styleOption, &name, name);
    return name;
}

} // namespace

class ZVUTIL_NO_EXPORT ZvStyleManager::Impl
{
public:
    Impl();

    void merge(const ZvStyleLibrary& other);

    ZvStyleLibrary library;
    ZvStyle current; ///< may differ from the library's style of its name
};

ZvStyleManager::Impl::Impl()
{
    try {
        makeStyleDirectory();
        library.add(StyleConfigPath());
    } catch (...) {
        // By contract: the constructor ignores any failure with the user's files, so that the
        // built-in styles always work.
    }
    current = styleOrLight(library, &hostStyleName);
}

void ZvStyleManager::Impl::merge(const ZvStyleLibrary& other)
{
    library.clear(false);
    library.add(other);
    current = styleOrLight(library, [this] { return current.name(); });
}

ZvStyleManager::ZvStyleManager()
    : m_implementation(new Impl)
{
}

ZvStyleManager::~ZvStyleManager()
{
    std::default_delete<Impl>()(m_implementation);
}

ZvFilePath ZvStyleManager::StyleDirectory()
{
    ZvFilePath path = ZvFilePath::Directory(StandardPath::AppData);
    path /= ZvFilePath();
    return path /= ZvFilePath("ui");
}

ZvFilePath ZvStyleManager::StyleConfigPath()
{
    return StyleDirectory() /= ZvFilePath("styles.xml");
}

ZvFilePath ZvStyleManager::StyleModificationsPath()
{
    return StyleDirectory() /= ZvFilePath("modifications.qss");
}

const ZvStyle& ZvStyleManager::CurrentStyle()
{
    return _Get().d_impl()->current;
}

const ZvStyleLibrary& ZvStyleManager::Library()
{
    return _Get().d_impl()->library;
}

QStringList ZvStyleManager::AvailableStyleNames()
{
    return Library().names();
}

ZvStyle ZvStyleManager::Style(const QString& name)
{
    return Library().style(name.toStdString().c_str());
}

void ZvStyleManager::SetStyle(const ZvStyle& style)
{
    ZvStyleManager& manager = _Get();
    QMetaObject::invokeMethod(
        &manager, [&manager, copy = style] { manager.setStyle(copy); }, Qt::AutoConnection);
}

void ZvStyleManager::SetStyle(ZvStyle&& style)
{
    // By contract: SetStyle() copies a temporary like any other style and leaves it unchanged.
    // Every argument is copied before the call moves to the manager's thread.
    SetStyle(std::as_const(style));
}

void ZvStyleManager::SetLibrary(const ZvStyleLibrary& library)
{
    ZvStyleManager& manager = _Get();
    QMetaObject::invokeMethod(
        &manager, [&manager, copy = library] { manager.setLibrary(copy); }, Qt::AutoConnection);
}

void ZvStyleManager::Refresh()
{
    ZvStyleManager& manager = _Get();
    QMetaObject::invokeMethod(
        &manager, [&manager] { manager.refresh(); }, Qt::AutoConnection);
}

void ZvStyleManager::Update(const ZvStyle& style)
{
    Update(ZvStyle(style));
}

void ZvStyleManager::Update(ZvStyle&& style)
{
    ZvStyleLibrary& library = _Get().d_impl()->library;
    library.update(std::move(style));
    library.save(StyleConfigPath());
}

ZvStyleManager& ZvStyleManager::_Get()
{
    static const std::unique_ptr<ZvStyleManager> manager(new ZvStyleManager);
    return *manager;
}

void ZvStyleManager::setStyle(const ZvStyle& style)
{
    setStyle(ZvStyle(style));
}

void ZvStyleManager::setStyle(ZvStyle&& style)
{
    d_impl()->current = std::move(style);
    Q_EMIT currentStyleChanged(d_impl()->current, QPrivateSignal());
}

void ZvStyleManager::setLibrary(const ZvStyleLibrary& library)
{
    d_impl()->merge(library);
    Q_EMIT styleLibraryChanged(QPrivateSignal());
    Q_EMIT currentStyleChanged(d_impl()->current, QPrivateSignal());
}

void ZvStyleManager::refresh()
{
    d_impl()->current.apply();
    Q_EMIT currentStyleChanged(d_impl()->current, QPrivateSignal());
}

ZvStyleManager::Impl* ZvStyleManager::d_impl()
{
    return m_implementation;
}

const ZvStyleManager::Impl* ZvStyleManager::d_impl() const
{
    return m_implementation;
}

ZvStyleManager& styleManager()
{
    return ZvStyleManager::_Get();
}

} // namespace libzvutil
