#include "common/tell.h"

#include <zvutil/details/log_level.h>

#include <zv_logging/zv_logging.h>

#include <QLabel>
#include <QMessageBox>
#include <QStringList>

namespace workbench {

void logFailure(const Failure& failure)
{
    const QString line =
        QStringList{failure.what, failure.reason, failure.advice}.join(QLatin1Char(' '));
    zvutil::logging::write(zvutil::details::log_error, "Workbench",
                           line.trimmed().toUtf8().constData());
}

void tell(QWidget* parent, const Failure& failure)
{
    logFailure(failure);
    auto* const box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Workbench"),
                                      failure.what, QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(QStringList{failure.reason, failure.advice}.join(QLatin1Char('\n')));
    // QMessageBox applies its text format to the main text alone, so set that of the other label,
    // too: a file's name could be taken for HTML.
    box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))
        ->setTextFormat(Qt::PlainText);
    box->open();
}

} // namespace workbench
