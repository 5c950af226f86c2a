// Shows a control that follows the user's style.
//
//   level_meter [Light | Dark]              opens a window with the control and the style editor
//   level_meter STYLE --picture FILE        writes a picture of the control, and ends

#include "LevelMeter.h"

#include <zvutil/ZvException.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleManager.h>

#include <QApplication>
#include <QPixmap>
#include <QStringList>

#include <cstdio>

using libzvutil::ZvStyleManager;

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        ZvStyleManager::SetStyle(ZvStyleManager::Style(arguments.value(1, "Light")));
    } catch (const zvutil::ZvException& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    ZvStyleManager::Refresh();
    LevelMeter::registerPreview();

    LevelMeter meter;
    meter.setLevel(0.95);
    if (arguments.value(2) == "--picture")
        return meter.grab().save(arguments.value(3), "PNG") ? 0 : 1;
    meter.show();
    libzvutil::ZvStyleEditor editor;
    editor.show();
    return QApplication::exec();
}
