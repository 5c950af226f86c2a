#include <zvutil/ZvProcessingIndicator.h>

#include <QAbstractEventDispatcher>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QTabWidget>
#include <QTest>
#include <QTimerEvent>
#include <QTransform>
#include <QVBoxLayout>

#include <algorithm>
#include <type_traits>

namespace {

/// Stands between a spinner and its timer: counts what the timer sends and, while it holds, keeps it
/// away, so that the spinner turns only when the test says so.
class Ticks : public QObject
{
public:
    explicit Ticks(const ZvProcessingIndicator& spinner)
        : m_state(spinner.children().constFirst())
    {
        m_state->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Timer || m_isPassing)
            return QObject::eventFilter(watched, event);
        ++count;
        m_timer = static_cast<QTimerEvent*>(event)->timerId();
        return holds;
    }

    /// Sends what the timer would.
    void turn(int times)
    {
        m_isPassing = true;
        for (int i = 0; i < times; ++i) {
            QTimerEvent event(m_timer);
            QCoreApplication::sendEvent(m_state, &event);
        }
        m_isPassing = false;
    }

    void sendForeign()
    {
        m_isPassing = true;
        QTimerEvent event(m_timer + 1'000);
        QCoreApplication::sendEvent(m_state, &event);
        m_isPassing = false;
    }

    int count = 0;
    bool holds = true;

private:
    QObject* m_state;
    int m_timer = 0;
    bool m_isPassing = false;
};

/// The timers that run for a spinner.
QList<QAbstractEventDispatcher::TimerInfo> timersOf(const ZvProcessingIndicator& spinner)
{
    auto* const dispatcher = QAbstractEventDispatcher::instance();
    return dispatcher->registeredTimers(spinner.children().constFirst())
        + dispatcher->registeredTimers(const_cast<ZvProcessingIndicator*>(&spinner));
}

/// A spinner that is shown and turns only when the test says so.
struct Held
{
    explicit Held(const QSize& size = QSize(64, 64))
    {
        spinner.resize(size);
        spinner.show();
        QTRY_VERIFY(ticks.count > 0);
    }

    ZvProcessingIndicator spinner;
    Ticks ticks{spinner};
};

/// What the widget paints, on nothing.
QImage painted(ZvProcessingIndicator& spinner)
{
    QImage image(spinner.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    spinner.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// How opaque a place is, given in parts of the spinner's size above its centre and turned by \p
/// degrees, clockwise.
int alphaAt(const QImage& image, double distance, double degrees)
{
    const int side = std::min(image.width(), image.height());
    const QPoint centre = image.rect().center();
    const QTransform turned = QTransform().translate(centre.x(), centre.y()).rotate(degrees);
    const QPointF place = turned.map(QPointF(0, -distance * side));
    return qAlpha(image.pixel(int(place.x()), int(place.y())));
}

} // namespace

class tst_ZvProcessingIndicator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        static_assert(std::is_base_of_v<QWidget, ZvProcessingIndicator>);
        static_assert(!std::is_convertible_v<QWidget*, ZvProcessingIndicator>);
        QCOMPARE(ZvProcessingIndicator::staticMetaObject.className(), "ZvProcessingIndicator");
        QCOMPARE(ZvProcessingIndicator::staticMetaObject.methodOffset(),
                 ZvProcessingIndicator::staticMetaObject.methodCount());

        QWidget parent;
        const auto* const spinner = new ZvProcessingIndicator(&parent);
        QCOMPARE(spinner->parentWidget(), &parent);
        QCOMPARE(spinner->minimumSizeHint(), QSize(16, 16));
        QCOMPARE(spinner->sizePolicy(),
                 QSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding));
        QCOMPARE(spinner->cursor().shape(), Qt::WaitCursor);
        QCOMPARE(spinner->children().size(), 1);
        QCOMPARE(spinner->children().constFirst()->metaObject(), &QObject::staticMetaObject);
    }

    void growsInALayout()
    {
        QWidget window;
        auto* const layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        const auto* const spinner = new ZvProcessingIndicator;
        layout->addWidget(const_cast<ZvProcessingIndicator*>(spinner));
        window.resize(300, 200);
        window.show();
        QCOMPARE(spinner->size(), QSize(300, 200));
    }

    void barsByPositionAndAlpha_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("turns");
        for (const QSize size :
             {QSize(48, 48), QSize(64, 64), QSize(101, 101), QSize(240, 120), QSize(90, 301)}) {
            for (const int turns : {0, 1, 4, 11, 12, 13}) {
                QTest::addRow("%d by %d, %d turns", size.width(), size.height(), turns)
                    << size << turns;
            }
        }
    }

    void barsByPositionAndAlpha()
    {
        QFETCH(QSize, size);
        QFETCH(int, turns);
        Held held(size);
        held.ticks.turn(turns);
        const QImage image = painted(held.spinner);
        for (int bar = 0; bar < 12; ++bar) {
            const double degrees = (turns - bar) * 30.0;
            const int expected = qRound(255 * (12 - bar) / 12.0);
            // Its middle, and near its ends.
            for (const double distance : {0.2, 0.325, 0.45}) {
                const int alpha = alphaAt(image, distance, degrees);
                QVERIFY2(std::abs(alpha - expected) <= 2,
                         qPrintable(QString("bar %1 at %2: %3 for %4")
                                        .arg(bar)
                                        .arg(distance)
                                        .arg(alpha)
                                        .arg(expected)));
            }
            // Nothing this side of it, beyond it, and in the gap to the next.
            QCOMPARE(alphaAt(image, 0.09, degrees), 0);
            QCOMPARE(alphaAt(image, 0.4, degrees + 15), 0);
        }
        QCOMPARE(alphaAt(image, 0, 0), 0);
    }

    void barsEndRound()
    {
        ZvProcessingIndicator spinner;
        spinner.resize(400, 400);
        const QImage image = painted(spinner);
        // The upright one: 28 wide, from 60 to 200 above the centre at 199.
        const auto alpha = [&image](int x, int y) { return qAlpha(image.pixel(199 + x, 199 - y)); };
        QCOMPARE(alpha(-12, 130), 255);
        QCOMPARE(alpha(11, 130), 255);
        QCOMPARE(alpha(-16, 130), 0);
        QCOMPARE(alpha(16, 130), 0);
        QCOMPARE(alpha(0, 196), 255);
        QCOMPARE(alpha(-12, 197), 0);
        QCOMPARE(alpha(12, 197), 0);
        QCOMPARE(alpha(0, 64), 255);
        QCOMPARE(alpha(-12, 62), 0);
        QCOMPARE(alpha(0, 57), 0);
    }

    void colourIsBlackWhateverThePalette()
    {
        ZvProcessingIndicator spinner;
        QPalette palette;
        palette.setColor(QPalette::WindowText, Qt::red);
        palette.setColor(QPalette::Text, Qt::red);
        spinner.setPalette(palette);
        spinner.resize(100, 100);
        const QImage image = painted(spinner);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(image.pixel(x, y) & 0xFFFFFFU, 0U);
        }
    }

    void onePixelIsPaintedFaintly()
    {
        ZvProcessingIndicator spinner;
        spinner.resize(1, 1);
        QVERIFY(qAlpha(painted(spinner).pixel(0, 0)) < 255);
    }

    void turnsWhileItIsShown()
    {
        ZvProcessingIndicator spinner;
        Ticks ticks(spinner);
        ticks.holds = false;
        spinner.resize(64, 64);
        const QImage before = painted(spinner);
        spinner.show();
        QTRY_VERIFY(painted(spinner) != before);
        QTRY_VERIFY(ticks.count >= 3);
    }

    void timerOfAnotherIsPassedOn()
    {
        Held held;
        const QImage before = painted(held.spinner);
        held.ticks.sendForeign();
        QCOMPARE(painted(held.spinner), before);
    }

    void turnsTenTimesASecond()
    {
        ZvProcessingIndicator spinner;
        for (int round = 0; round < 2; ++round) {
            spinner.show();
            QCOMPARE(timersOf(spinner).size(), 1);
            QCOMPARE(timersOf(spinner).constFirst().interval, 100);
            spinner.hide();
        }
    }

    void noTimerRunsUnlessItIsShown()
    {
        QTabWidget tabs;
        auto* const spinner = new ZvProcessingIndicator;
        tabs.addTab(new QWidget, QString());
        tabs.addTab(spinner, QString());
        // Neither before the first time, nor on a page behind another, nor in a hidden window.
        QCOMPARE(timersOf(*spinner).size(), 0);
        tabs.show();
        QCOMPARE(timersOf(*spinner).size(), 0);
        tabs.setCurrentIndex(1);
        QCOMPARE(timersOf(*spinner).size(), 1);
        tabs.setCurrentIndex(0);
        QCOMPARE(timersOf(*spinner).size(), 0);
        tabs.setCurrentIndex(1);
        QCOMPARE(timersOf(*spinner).size(), 1);
        tabs.hide();
        QCOMPARE(timersOf(*spinner).size(), 0);
    }

    void goesOnWhereItStopped()
    {
        Held held;
        const QImage first = painted(held.spinner);
        held.ticks.turn(5);
        const QImage before = painted(held.spinner);
        QVERIFY(before != first);
        held.spinner.hide();
        held.spinner.show();
        QCOMPARE(painted(held.spinner), before);
    }

    void mayGoWhileItRuns()
    {
        auto* const spinner = new ZvProcessingIndicator;
        spinner->show();
        const QPointer<QObject> state = spinner->children().constFirst();
        delete spinner;
        QVERIFY(!state);
        QTest::qWait(150);
    }
};

QTEST_MAIN(tst_ZvProcessingIndicator)

#include "tst_ZvProcessingIndicator.moc"
