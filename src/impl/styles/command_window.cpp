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
    // The application's sheet may bring another font.
    window->ensurePolished();
    const QFontMetrics metrics = window->fontMetrics();
    const QSize least(80 * metrics.averageCharWidth(), 30 * metrics.lineSpacing());
    // Qt itself would take two thirds of the screen at most, and one size for all that can scroll.
    window->resize(
        window->sizeHint().expandedTo(least).boundedTo(window->screen()->availableSize()));
    window->show();
}

} // namespace libzvutil::impl
