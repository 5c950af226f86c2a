#include "common/page.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleManager.h>

#include <QColor>
#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QString>
#include <QWidget>

namespace workbench {

namespace {

QString fixedPitch()
{
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Not all platforms have one; this name stands for any.
    return QStringLiteral("font-family: \"%1\";")
        .arg(QFontInfo(font).fixedPitch() ? font.family() : QStringLiteral("monospace"));
}

QString background()
{
    const QColor colour =
        libzvutil::ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled);
    return QStringLiteral("background-color: %1;").arg(colour.name());
}

} // namespace

void setFixedPitch(QWidget& widget)
{
    widget.setStyleSheet(fixedPitch());
}

void makePage(QWidget& widget)
{
    const auto paint = [&widget] { widget.setStyleSheet(fixedPitch() + background()); };
    QObject::connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged,
                     &widget, paint);
    paint();
}

} // namespace workbench
