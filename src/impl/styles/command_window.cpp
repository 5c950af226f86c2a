#include "impl/styles/command_window.h"

#include <QFontMetrics>
#include <QScreen>
#include <QSize>
#include <QWidget>

namespace libzvutil::impl {

void show_command_window(QWidget* window, const QString& title)
{
    window->setAttribute(Qt::WA_DeleteOnClose, true);
    window->setWindowTitle(title);
    // Polish first: the application's style sheet may change the font.
    window->ensurePolished();
    const QFontMetrics metrics = window->fontMetrics();
    const QSize least(80 * metrics.averageCharWidth(), 30 * metrics.lineSpacing());
    // Compute the size here: Qt would take at most two thirds of the screen, and one size for
    // anything that scrolls.
    window->resize(
        window->sizeHint().expandedTo(least).boundedTo(window->screen()->availableSize()));
    window->show();
}

} // namespace libzvutil::impl
