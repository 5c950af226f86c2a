#pragma once

#include <zvutil/ZvStyleManager.h>

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QString>
#include <QTest>
#include <QWidget>

namespace zvtest {

/// How long to wait for what has to come, in ms: a busy machine takes its time under a sanitizer.
constexpr int longWait = 60'000;

/// Whether a window that is shown becomes the active one, which keys and shortcuts need.
inline bool activate(QWidget& window)
{
    // Before it is there a display gives it nothing.
    if (!QTest::qWaitForWindowExposed(&window, longWait))
        return false;
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window, longWait);
}

/// Files that have been read as XML are closed by the event loop.
inline void closeFiles()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Puts a style on the application.
inline void showStyle(const QString& name)
{
    using libzvutil::ZvStyleManager;
    ZvStyleManager::SetStyle(ZvStyleManager::Style(name));
    ZvStyleManager::Refresh();
}

/// The same, and has what is shown follow it.
inline void showPaintedStyle(const char* name)
{
    showStyle(QString::fromLatin1(name));
    QCoreApplication::processEvents();
}

/// How many pixels have just that colour.
inline int pixelsOf(const QImage& image, const QColor& colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}

} // namespace zvtest
