#pragma once

class QLineEdit;
class QWidget;

namespace workbench {

/// Returns the line edit within \p widget that the user types in, or nullptr: what the clipboard is used for then.
QLineEdit* focusedField(const QWidget& widget);

} // namespace workbench
