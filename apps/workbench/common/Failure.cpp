#include "common/Failure.h"

#include <zv_logging/zv_logging.h>

#include <QLabel>
#include <QMessageBox>
#include <QStringList>

namespace workbench {

namespace {

constexpr int errorLevel = 4;

} // namespace

void tell(QWidget* parent, const Failure& failure)
{
    const QString line =
        QStringList{failure.what, failure.reason, failure.advice}.join(QLatin1Char(' '));
    zvutil::logging::write(errorLevel, "Workbench", line.trimmed().toUtf8().constData());
    auto* const box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Workbench"),
                                      failure.what, QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(QStringList{failure.reason, failure.advice}.join(QLatin1Char('\n')));
    // The box doesn't hand its format on to this one.
    box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))
        ->setTextFormat(Qt::PlainText);
    box->open();
}

} // namespace workbench
