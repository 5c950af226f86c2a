// What a spinner costs while it turns: the processor time of two seconds, against a widget that only repaints
// itself as often. And a paint of it, against the twelve rounded rectangles that it has to draw.

#include <zvutil/ZvProcessingIndicator.h>

#include "support/Quick.h"

#include <QApplication>
#include <QBasicTimer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <ctime>

namespace {

QApplication& application()
{
    static int argc = 1;
    static char name[] = "bench_widgets";
    static char* argv[] = {name, nullptr};
    static QApplication instance(argc, argv);
    return instance;
}

/// Repaints itself ten times a second, and draws nothing.
class Ticking : public QWidget
{
public:
    Ticking() { m_timer.start(100, this); }

protected:
    void timerEvent(QTimerEvent* /*event*/) override { update(); }

private:
    QBasicTimer m_timer;
};

/// Runs the event loop with \p Shown on the screen, and counts the time of the processor.
template <typename Shown>
void runShown(benchmark::State& state)
{
    application();
    Shown shown;
    shown.resize(32, 32);
    shown.show();
    for (auto _ : state) {
        const std::clock_t before = std::clock();
        const int milliseconds = zvbench::isQuick() ? 200 : 2'000;
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
        state.SetIterationTime(double(std::clock() - before) / CLOCKS_PER_SEC);
    }
}

void drawTwelveBars(QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.translate(16, 16);
    for (int i = 0; i < 12; ++i) {
        painter.drawRoundedRect(QRectF(-1.12, -16, 2.24, 11.2), 1.12, 1.12);
        painter.rotate(30);
    }
}

void paintFloor(benchmark::State& state)
{
    application();
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        drawTwelveBars(painter);
    }
}

void paintLibrary(benchmark::State& state)
{
    application();
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    ZvProcessingIndicator spinner;
    spinner.resize(32, 32);
    for (auto _ : state)
        spinner.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
}

BENCHMARK(runShown<Ticking>)->Name("shown for 2 s/floor")->Iterations(1)->UseManualTime();
BENCHMARK(runShown<ZvProcessingIndicator>)
    ->Name("shown for 2 s/library")
    ->Iterations(1)
    ->UseManualTime();
BENCHMARK(paintFloor)->Name("paint/floor");
BENCHMARK(paintLibrary)->Name("paint/library");

} // namespace
