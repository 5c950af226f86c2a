#include "shell/open_workbench.h"

#include "common/style_options.h"
#include "common/translations.h"
#include "shell/Arguments.h"
#include "shell/ProgramEnd.h"
#include "shell/Workbench.h"
#include "shell/document_types.h"

#include <zvutil/ZvStyleManager.h>

#include <HostSupport/saving.h>

#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QPixmap>
#include <QPointer>
#include <QSize>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <stdexcept>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds pollingInterval{50};

/// The size of a window that is opened for a picture: the same on each screen.
constexpr QSize pictureSize{1'200, 800};

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

/// Writes a picture of the window to \p file as soon as the window isn't busy. Then ends the
/// program if \p exits, with 1 if the picture couldn't be written.
void takePicture(Workbench& window, const QString& file, bool exits)
{
    auto* const timer = new QTimer(&window);
    timer->callOnTimeout(&window, [&window, timer, file, exits] {
        if (window.isBusy())
            return;
        timer->stop();
        timer->deleteLater();
        // The start page is closed by now but may not be deleted yet, and its tab would be in the picture.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

QString openWorkbench(const QStringList& words)
{
    static QPointer<Workbench> window;
    installTranslations();
    addOwnDocumentTypes();
    const Arguments arguments = Arguments::of(words);
    if (!arguments.error.isEmpty())
        return arguments.error;
    // The style is applied before anything is painted, or another one would show first.
    if (!arguments.style.isEmpty())
        showStyle(arguments.style);
    else if (!window)
        libzvutil::ZvStyleManager::Refresh();
    const bool isNew = window.isNull();
    if (isNew) {
        window = new Workbench;
        const bool isForUser = arguments.picture.isEmpty();
        window->restoreSession(isForUser ? WindowSession::Use::Keep : WindowSession::Use::Look);
        if (isForUser)
            new ProgramEnd(*window);
        else
            window->resize(pictureSize);
    }
    for (const DocumentType* const type : arguments.newDocuments)
        window->newDocument(*type);
    window->openFiles(arguments.files);
    window->show();
    window->raise();
    window->activateWindow();
    // Nobody would answer in front of a picture.
    if (isNew && arguments.picture.isEmpty())
        window->offerRecovery();
    if (!arguments.picture.isEmpty())
        // A script that asks for a picture must not end the program that the user works with.
        takePicture(*window, arguments.picture, isNew);
    return {};
}

} // namespace workbench
