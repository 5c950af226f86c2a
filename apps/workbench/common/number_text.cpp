#include "common/number_text.h"

#include <QLocale>

namespace workbench {

QString numberText(qint64 number)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

} // namespace workbench
