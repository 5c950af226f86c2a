#include "common/styles.h"

#include "common/file_content.h"
#include "common/path_names.h"

#include <HostSupport/Options.h>
#include <HostSupport/host.h>

#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

namespace workbench {

namespace {

constexpr char styleOption[] = "ZvStyle";
constexpr char accentOption[] = "ZvStyleAccent";

void show(libzvutil::ZvStyle style, const QColor& accent)
{
    if (accent.isValid())
        style.setAccent(accent);
    libzvutil::ZvStyleManager::SetStyle(style);
    libzvutil::ZvStyleManager::Refresh();
}

/// The library doesn't tell whether a file was written.
bool areStylesKept()
{
    using libzvutil::ZvStyleManager;
    const QTemporaryDir folder;
    const zvutil::ZvFilePath expected =
        filePath(QDir::toNativeSeparators(folder.filePath(QStringLiteral("styles.xml"))));
    ZvStyleManager::Library().save(expected);
    return !folder.isValid() || contentOf(ZvStyleManager::StyleConfigPath()) == contentOf(expected);
}

} // namespace

QString optionText(const QString& name)
{
    YString value;
    sp_ReadOptionsInfo(name.toUtf8().constData(), &value, YString());
    return QString::fromUtf8(value.c_str());
}

QColor styleColour(libzvutil::ZvStyleBrush brush)
{
    return libzvutil::ZvStyle::Current().colour(brush).qColour();
}

void chooseStyle(const QString& name)
{
    showStyle(name);
    host::writeOption(styleOption, name.toStdString());
}

void chooseAccent(const QColor& colour)
{
    show(libzvutil::ZvStyleManager::CurrentStyle(), colour);
    host::writeOption(accentOption, colour.name().toStdString());
}

QString currentStyleName()
{
    return libzvutil::ZvStyleManager::CurrentStyle().name().toQString();
}

QColor chosenAccent()
{
    return QColor(optionText(QLatin1String(accentOption)));
}

void applyStyleOptions()
{
    const QString name = optionText(QLatin1String(styleOption));
    const QStringList names = libzvutil::ZvStyleManager::AvailableStyleNames();
    showStyle(names.contains(name, Qt::CaseInsensitive) ? name : QStringLiteral("Light"));
}

void showStyle(const QString& name)
{
    // The library's own was made when the accent may have been another one.
    show(libzvutil::ZvStyleManager::Style(name), chosenAccent());
}

void keepEditedStyles(const QObject& context, const std::function<void(const Failure&)>& tell)
{
    using libzvutil::ZvStyleManager;
    QObject::connect(
        &libzvutil::styleManager(), &ZvStyleManager::styleLibraryChanged, &context, [tell] {
            // Whatever style is put in, all of them are written.
            ZvStyleManager::Update(
                ZvStyleManager::Style(ZvStyleManager::AvailableStyleNames().first()));
            showStyle(currentStyleName());
            if (!areStylesKept())
                tell({QCoreApplication::translate("workbench::Styles",
                                                  "Your styles aren't kept for the next start."),
                      QCoreApplication::translate("workbench::Styles", "“%1” can't be written.")
                          .arg(ZvStyleManager::StyleConfigPath().toQString()),
                      QCoreApplication::translate(
                          "workbench::Styles",
                          "Check your rights to that file, and that the disk isn't full. Then "
                          "apply the style once more.")});
        });
}

} // namespace workbench
