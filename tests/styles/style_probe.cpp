// A process with a style manager of its own, and prints what it finds:
//     style_probe DIRECTORY start STYLE     how the manager starts with this option
//     style_probe DIRECTORY road STYLE      a change of style from end to end
//     style_probe DIRECTORY update STYLE    saves a style many times
//     style_probe DIRECTORY icons [none]    what Qt is told of icons, without any plugins if told so

#include "UserStyles.h"

#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/Warnings.h"

#include <HostSupport/host.h>

#include <QApplication>
#include <QColor>
#include <QStringList>

#include <cstdio>
#include <string>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;

namespace {

void print(const QStringList& parts)
{
    std::puts(parts.join(QLatin1Char('|')).toUtf8().constData());
}

QString current()
{
    return ZvStyleManager::CurrentStyle().name().toQString();
}

void start()
{
    const ZvStyle& light = ZvStyleManager::Library().light();
    const QStringList names = ZvStyleManager::AvailableStyleNames();
    print({current(), names.join(QLatin1Char(',')),
           light.colour(ZvStyleBrush::Panel).colourString().toQString()});
}

void road()
{
    QStringList events = {current()};
    QObject context;
    QObject::connect(
        &libzvutil::styleManager(), &ZvStyleManager::currentStyleChanged, &context,
        [&](const ZvStyle& s) { events += QStringLiteral("style ") + s.name().toQString(); });
    QObject::connect(&libzvutil::styleManager(), &ZvStyleManager::styleLibraryChanged, &context,
                     [&] { events += QStringLiteral("library"); });

    ZvStyleLibrary edited = ZvStyleManager::Library();
    edited.update(zvtest::styleWithPanel("Edited", QColor(4, 5, 6)));
    ZvStyleManager::SetLibrary(edited);
    ZvStyleManager::SetStyle(ZvStyleManager::Style(QStringLiteral("Edited")));
    ZvStyleManager::Refresh();
    const int panel = qApp->styleSheet().indexOf(QStringLiteral("background-color:"));
    events += QStringLiteral("sheet ") + qApp->styleSheet().mid(panel + 17, 9);
    edited.clear(false);
    edited.update(ZvStyleManager::Style(QStringLiteral("Mine")));
    QObject::disconnect(&libzvutil::styleManager(), nullptr, &context, nullptr);
    ZvStyleManager::SetLibrary(edited);
    ZvStyleManager::Update(zvtest::styleWithPanel("Saved", QColor(7, 8, 9)));
    print(events);
}

void update(const std::string& name)
{
    for (int i = 0; i < 100; ++i) {
        ZvStyleManager::Update(zvtest::styleWithPanel(name.c_str(), QColor(i, 0, 0)));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void icons(bool withoutPlugins)
{
    if (withoutPlugins)
        QCoreApplication::setLibraryPaths({});
    print(zvtest::warningsOf([] {
        for (int i = 0; i < 3; ++i)
            ZvStyleManager::Refresh();
    }));
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    const std::string directory = arguments[1].toStdString();
    const QString mode = arguments[2];
    const std::string argument = arguments.value(3).toStdString();
    host::setPathSymbol("ZVAPPDATAPATH", directory);
    host::setOptionsFile(directory + "/options.ini");
    if (mode == QLatin1String("start") || mode == QLatin1String("road")) {
        if (!argument.empty())
            host::writeOption("ZvStyle", argument);
        mode == QLatin1String("start") ? start() : road();
    } else if (mode == QLatin1String("update")) {
        update(argument);
    } else if (mode == QLatin1String("icons")) {
        icons(argument == "none");
    } else {
        return 2;
    }
    return 0;
}
