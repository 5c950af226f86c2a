#pragma once

class QString;
class QWidget;

namespace libzvutil::impl {

/// Shows \p window, which deletes itself when it is closed. Its size is that of its content, but at
/// least 80 characters by 30 lines and at most the screen's.
void show_command_window(QWidget* window, const QString& title);

} // namespace libzvutil::impl
