#pragma once

#include <QMetaType>
#include <QString>

class QWidget;

namespace workbench {

/// A failure, described to the user in up to three sentences.
struct Failure
{
    QString what; ///< what failed, and where: "The test plan “C:\a.testplan” was not saved."
    QString reason; ///< why: "The disk is full."
    QString advice; ///< what to do now: "Free some space, or save it under another name."
};

/// Shows \p failure in a message box in front of \p parent, which may be null, writes it to the
/// log, and returns at once.
void tell(QWidget* parent, const Failure& failure);

} // namespace workbench

Q_DECLARE_METATYPE(workbench::Failure)
