#include "common/page_style.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleManager.h>

#include <QColor>
#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QString>
#include <QVariant>
#include <QWidget>

namespace workbench {

namespace {

QString fixedPitch()
{
    return QStringLiteral("font-family: \"%1\";").arg(fixedPitchFamily());
}

QString background()
{
    const QColor colour =
        libzvutil::ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled);
    return QStringLiteral("background-color: %1;").arg(colour.name());
}

constexpr const char* textSize = "pageTextSize"; // a dynamic property

/// Returns the size of the text if the page has one of its own.
QString sizeOf(const QWidget& page)
{
    const double points = page.property(textSize).toDouble();
    return points > 0 ? QStringLiteral("font-size: %1pt;").arg(points) : QString();
}

void paintPage(QWidget& page)
{
    page.setStyleSheet(fixedPitch() + background() + sizeOf(page));
}

} // namespace

QString fixedPitchFamily()
{
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Platforms without such a font map the generic name "monospace" to one that they have.
    return QFontInfo(font).fixedPitch() ? font.family() : QStringLiteral("monospace");
}

void setFixedPitch(QWidget& widget)
{
    widget.setStyleSheet(fixedPitch());
}

void makePage(QWidget& widget)
{
    QObject::connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged,
                     &widget, [&widget] { paintPage(widget); });
    paintPage(widget);
}

void setPageTextSize(QWidget& page, double points)
{
    page.setProperty(textSize, points);
    paintPage(page);
}

} // namespace workbench
