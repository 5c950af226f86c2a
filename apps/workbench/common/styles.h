#pragma once

#include "common/Failure.h"

#include <zvutil/ZvStyleBrush.h>

#include <QColor>
#include <QString>

#include <functional>

class QObject;

namespace workbench {

/// A colour of the current style.
QColor styleColour(libzvutil::ZvStyleBrush brush);

/// Puts a style on the application and keeps it as the user's own. Throws `std::runtime_error` if it
/// can't be kept.
void chooseStyle(const QString& name);

/// The same with the accent of all styles.
void chooseAccent(const QColor& colour);

/// The text of a host's option as it is now, empty if there is none of that name.
QString optionText(const QString& name);

/// The style that is on the application now, but for what the two commands for a look have done.
QString currentStyleName();

/// The accent that is chosen now.
QColor chosenAccent();

/// Puts the style and the accent on the application that the options name.
void applyStyleOptions();

/// Puts a style on the application, this time.
void showStyle(const QString& name);

/// As long as \p context lives, styles that the style editor hands over are written to disc, and the
/// current one is shown as it is now. \p tell is called if they can't be written.
void keepEditedStyles(const QObject& context, const std::function<void(const Failure&)>& tell);

} // namespace workbench
