// The workbench as a user of Windows starts it: the program without a console, its window on a display, and
// the button that closes it.

#include <support/Workbench.h>

#include <QColor>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>

#include <windows.h>

using zvtest::longWait;

namespace {

/// Takes over a window whose title ends in "Workbench", and ends the search then: before that the title has the
/// document's name.
BOOL CALLBACK takeWorkbench(HWND window, LPARAM found)
{
    std::array<wchar_t, 256> title = {};
    const int length = GetWindowTextW(window, title.data(), int(title.size()));
    if (!IsWindowVisible(window)
        || !QString::fromWCharArray(title.data(), length).endsWith("Workbench"))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

HWND theWindow()
{
    HWND window = nullptr;
    EnumWindows(&takeWorkbench, reinterpret_cast<LPARAM>(&window));
    return window;
}

QSet<QRgb> coloursOf(const QImage& picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    }
    return colours;
}

/// The longest line from top to bottom that is lighter than the given grey.
int longestLightLine(const QImage& picture, int grey)
{
    int longest = 0;
    for (int x = 0; x < picture.width(); ++x) {
        int length = 0;
        for (int y = 0; y < picture.height(); ++y) {
            length = qGray(picture.pixel(x, y)) > grey ? length + 1 : 0;
            longest = std::max(longest, length);
        }
    }
    return longest;
}

} // namespace

class tst_zvhost_window : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAndCloses_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("ratio");
        for (const char* const ratio : {"1", "2"}) {
            for (const char* const style : {"Light", "Dark"})
                QTest::addRow("%s, %sx", style, ratio) << style << ratio;
        }
    }

    void opensAndCloses()
    {
        QFETCH(QString, style);
        QFETCH(QString, ratio);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", ratio);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(WINDOWED_FILE,
                      {"--style", style, EXAMPLES "/workbench/amplifier.zvsch",
                       EXAMPLES "/workbench/amplifier.testplan"});
        QImage picture;
        const bool isPainted = QTest::qWaitFor(
            [&picture] {
                picture = pictureOfWindow();
                return coloursOf(picture).size() > 20;
            },
            longWait);
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(picture.save(QString(PICTURES "/zvhost-window-%1-%2x.png").arg(style, ratio)));
        QVERIFY(isPainted);
        QVERIFY(picture.width() > 1'000);
        QVERIFY(picture.height() > 700);
        if (style == "Dark") {
            // What the sheet leaves to the style of Windows would have frames in light colours.
            QVERIFY2(longestLightLine(picture, 150) < 60 * ratio.toInt(),
                     qPrintable(QString::number(longestLightLine(picture, 150))));
        }
        QVERIFY(PostMessageW(theWindow(), WM_CLOSE, 0, 0));
        QVERIFY(process.waitForFinished(longWait));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }

private:
    static QImage pictureOfWindow()
    {
        const HWND window = theWindow();
        if (!window || !IsWindowVisible(window))
            return {};
        RECT area{};
        GetWindowRect(window, &area);
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, area.left, area.top, area.right - area.left, area.bottom - area.top)
            .toImage();
    }
};

QTEST_MAIN(tst_zvhost_window)
#include "tst_zvhost_window.moc"
