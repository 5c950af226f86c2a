#include "plain_text.h"

#include <QLabel>
#include <QMessageBox>

void showAsPlainText(QMessageBox& box)
{
    box.setTextFormat(Qt::PlainText);
    // The box doesn't hand its format on to this one.
    if (auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setTextFormat(Qt::PlainText);
}
