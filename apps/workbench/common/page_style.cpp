#include "common/page_style.h"

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
    // Platforms without such a font map the generic name "monospace" to one that they have.
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
