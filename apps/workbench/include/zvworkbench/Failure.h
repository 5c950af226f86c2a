#pragma once

#include <QMetaType>
#include <QString>

namespace workbench {

/// A failure, described to the user in up to three sentences.
/// @since 0.2 @ingroup workbench
struct Failure
{
    QString what; ///< what failed, and where: "The test plan “C:\a.testplan” was not saved."
    QString reason; ///< why: "The disk is full."
    QString advice; ///< what to do now: "Free some space, or save it under another name."
};

} // namespace workbench

Q_DECLARE_METATYPE(workbench::Failure)
