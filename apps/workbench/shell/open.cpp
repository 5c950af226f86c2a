#include "shell/open.h"

#include "common/styles.h"
#include "shell/Arguments.h"
#include "shell/Workbench.h"
#include "shell/document_types.h"

#include <zvutil/ZvStyleManager.h>

#include <HostSupport/saving.h>

#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

namespace workbench {

namespace {

constexpr int pollingInterval = 50;

bool savePicture(const QPixmap& picture, const QString& file)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!picture.save(&buffer, qPrintable(QFileInfo(file).suffix())))
        return false;
    try {
        host::saveFile(file.toStdString(), bytes.toStdString());
    } catch (const std::runtime_error&) {
        return false;
    }
    return true;
}

/// Makes a picture of the window as soon as it has shown all that it is busy with, and ends the program
/// if \p exits.
void takePicture(Workbench& window, const QString& file, bool exits)
{
    auto* const timer = new QTimer(&window);
    timer->callOnTimeout(&window, [&window, timer, file, exits] {
        if (window.isBusy())
            return;
        timer->stop();
        timer->deleteLater();
        const bool isWritten = savePicture(window.grab(), file);
        if (!isWritten) {
            const QByteArray name = QDir::toNativeSeparators(file).toUtf8();
            std::fprintf(stderr, "The picture “%s” can't be written.\n", name.constData());
        }
        if (exits)
            QCoreApplication::exit(isWritten ? 0 : 1);
    });
    timer->start(pollingInterval);
}

} // namespace

QString open(const QStringList& words)
{
    static QPointer<Workbench> window;
    addOwnDocumentTypes();
    const Arguments arguments = Arguments::of(words);
    if (!arguments.error.isEmpty())
        return arguments.error;
    // Before anything is painted.
    if (!arguments.style.isEmpty())
        showStyle(arguments.style);
    else if (!window)
        libzvutil::ZvStyleManager::Refresh();
    const bool isNew = window.isNull();
    if (isNew) {
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
        // A script that asks for one doesn't end what the user works on.
        takePicture(*window, arguments.picture, isNew);
    return {};
}

} // namespace workbench
