#include "open.h"

#include "Arguments.h"
#include "Workbench.h"
#include "styles.h"

#include <zvutil/ZvStyleManager.h>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

#include <cstdio>

namespace workbench {

namespace {

constexpr int pollingInterval = 50;

/// Ends the program as soon as the window has shown all that it is busy with, and its picture is in
/// \p file.
void takePicture(Workbench& window, const QString& file)
{
    auto* const timer = new QTimer(&window);
    timer->callOnTimeout(&window, [&window, file] {
        if (window.isBusy())
            return;
        if (window.grab().save(file)) {
            QCoreApplication::exit(0);
            return;
        }
        const QByteArray name = QDir::toNativeSeparators(file).toUtf8();
        std::fprintf(stderr, "The picture “%s” can't be written.\n", name.constData());
        QCoreApplication::exit(1);
    });
    timer->start(pollingInterval);
}

} // namespace

QString open(const QStringList& words)
{
    static QPointer<Workbench> window;
    const Arguments arguments = Arguments::of(words);
    if (!arguments.error.isEmpty())
        return arguments.error;
    // Before anything is painted.
    if (!arguments.style.isEmpty())
        showStyle(arguments.style);
    else if (!window)
        libzvutil::ZvStyleManager::Refresh();
    if (!window) {
        window = new Workbench;
        window->restoreSession();
    }
    for (const DocumentType* const type : arguments.newDocuments)
        window->newDocument(*type);
    window->openFiles(arguments.files);
    window->show();
    window->raise();
    window->activateWindow();
    if (!arguments.picture.isEmpty())
        takePicture(*window, arguments.picture);
    return {};
}

} // namespace workbench
