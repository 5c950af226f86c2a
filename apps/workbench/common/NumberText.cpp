#include "common/NumberText.h"

#include <QLocale>

namespace workbench {

QString numberText(qint64 number)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

QString countText(qint64 count, const QString& one, const QString& more)
{
    return numberText(count) + QLatin1Char(' ') + (count == 1 ? one : more);
}

} // namespace workbench
