#include "host_look.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

void useHostLook()
{
#if defined(Q_OS_WIN)
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(QApplication::style()->standardPalette());
#endif
}
