#pragma once

#include <QMetaType>
#include <QString>

class QWidget;

namespace workbench {

/// What a user has to know of something that didn't work.
struct Failure
{
    QString what; ///< what didn't work, and where: "The test plan “C:\a.testplan” was not saved."
    QString reason; ///< why: "The disk is full."
    QString advice; ///< what to do now: "Free some space, or save it under another name."
};

/// Shows \p failure in a box in front of \p parent, and returns at once. It goes to the log, too.
void tell(QWidget* parent, const Failure& failure);

} // namespace workbench

Q_DECLARE_METATYPE(workbench::Failure)
