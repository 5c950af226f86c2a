#pragma once

#include <zvworkbench/Failure.h>

#include <zvutil/ZvStyleBrush.h>

#include <QColor>
#include <QString>

#include <functional>

class QObject;

namespace workbench {

/// Returns a colour of the current style.
QColor styleColour(libzvutil::ZvStyleBrush brush);

/// Returns \p colour as a text on a page, such as a list or an editor, has it: it can be read there.
QColor pageTextColour(const QColor& colour);

/// Applies a style to the application, and stores its name as the user's choice. Throws
/// `std::runtime_error` if the choice can't be stored; the style is applied all the same.
void chooseStyle(const QString& name);

/// Applies an accent to the current style, and stores it as the user's choice for all styles.
/// Throws `std::runtime_error` if the choice can't be stored; the accent is applied all the same.
void chooseAccent(const QColor& colour);

/// Returns the current value of a host's option, or an empty text if there is no such option.
QString optionText(const QString& name);

/// Returns the name of the style that was applied last, even if the commands `_s1` and `_s2` show
/// another look for now.
QString currentStyleName();

/// Returns the accent that the user has chosen.
QColor chosenAccent();

/// Applies the style and the accent that the options name, or the style "Light" if there is no such
/// style.
void applyStyleOptions();

/// Applies a style to the application without storing the choice.
void showStyle(const QString& name);

/// Writes all styles to disk and applies the current one again whenever the style editor hands over
/// a style, as long as \p context exists. Calls \p tell if the styles can't be written.
void keepEditedStyles(const QObject& context, const std::function<void(const Failure&)>& tell);

} // namespace workbench
