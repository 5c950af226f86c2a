#include "common/style_options.h"

#include "common/file_content.h"
#include "common/path_names.h"
#include "common/readable_colour.h"

#include <HostSupport/Options.h>
#include <HostSupport/host.h>

#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

namespace workbench {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::Styles)
};

constexpr char styleOption[] = "ZvStyle";
constexpr char accentOption[] = "ZvStyleAccent";

void show(libzvutil::ZvStyle style, const QColor& accent)
{
    if (accent.isValid())
        style.setAccent(accent);
    libzvutil::ZvStyleManager::SetStyle(style);
    libzvutil::ZvStyleManager::Refresh();
}

/// Returns whether the library has written its styles to their file. The library doesn't report
/// that, so the file is compared with a second one that is saved here.
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

QColor pageTextColour(const QColor& colour)
{
    return readable(colour, styleColour(libzvutil::ZvStyleBrush::EditorEnabled));
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
    // The library's copy of the style has the accent of the time when it was made, so set the
    // chosen one.
    show(libzvutil::ZvStyleManager::Style(name), chosenAccent());
}

void keepEditedStyles(const QObject& context, const std::function<void(const Failure&)>& tell)
{
    using libzvutil::ZvStyleManager;
    QObject::connect(&libzvutil::styleManager(), &ZvStyleManager::styleLibraryChanged, &context,
                     [tell] {
                         // Update() writes all styles, whichever one it is given.
                         ZvStyleManager::Update(
                             ZvStyleManager::Style(ZvStyleManager::AvailableStyleNames().first()));
                         showStyle(currentStyleName());
                         if (!areStylesKept())
                             tell({Texts::tr("Your styles aren't kept for the next start."),
                                   Texts::tr("“%1” can't be written.")
                                       .arg(ZvStyleManager::StyleConfigPath().toQString()),
                                   Texts::tr("Check that you may write to this file, and that "
                                             "the disk isn't full. Then "
                                             "apply the style once more.")});
                     });
}

} // namespace workbench
