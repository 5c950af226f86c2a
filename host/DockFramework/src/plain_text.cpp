#include "plain_text.h"

#include <QLabel>
#include <QMessageBox>

void showAsPlainText(QMessageBox& box)
{
    box.setTextFormat(Qt::PlainText);
    // QMessageBox doesn't apply its text format to the informative text.
    if (auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setTextFormat(Qt::PlainText);
}
