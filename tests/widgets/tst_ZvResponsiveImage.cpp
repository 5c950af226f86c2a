#include <zvutil/ZvResponsiveImage.h>

#include <QDir>
#include <QImage>
#include <QMetaMethod>
#include <QPainter>
#include <QResizeEvent>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <climits>
#include <type_traits>

namespace {

/// Red on the left, blue on the right.
QPixmap picture(int width, int height)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::red);
    QPainter painter(&pixmap);
    painter.fillRect(width / 2, 0, width - width / 2, height, Qt::blue);
    return pixmap;
}

/// What a widget of this size looks like, on white.
QImage look(ZvResponsiveImage& widget, const QSize& size)
{
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    widget.setPalette(palette);
    widget.resize(size);
    return widget.grab().toImage();
}

/// What isn't white, in pixels of the image.
QRect painted(const QImage& image)
{
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white))
                all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

/// The same but for a pixel, where an edge falls between two.
bool nearlyEqual(const QRect& left, const QRect& right)
{
    return std::abs(left.left() - right.left()) <= 1 && std::abs(left.top() - right.top()) <= 1
        && std::abs(left.right() - right.right()) <= 1
        && std::abs(left.bottom() - right.bottom()) <= 1;
}

QByteArray text(const QRect& rect)
{
    return QString("%1,%2 to %3,%4")
        .arg(rect.left())
        .arg(rect.top())
        .arg(rect.right())
        .arg(rect.bottom())
        .toLatin1();
}

} // namespace

class tst_ZvResponsiveImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        static_assert(std::is_base_of_v<QWidget, ZvResponsiveImage>);
        static_assert(!std::is_default_constructible_v<ZvResponsiveImage>);
        const QMetaObject& meta = ZvResponsiveImage::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("pressed()"));
        QWidget parent;
        const auto* const image = new ZvResponsiveImage(QPixmap(), &parent);
        QCOMPARE(image->parentWidget(), &parent);
        QCOMPARE(image->minimumSizeHint(), QSize(1, 1));
        QVERIFY(image->hasHeightForWidth());
    }

    void byteOrderMarkIsPartOfAName()
    {
        const QTemporaryDir directory;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(directory.path()));
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(picture(7, 5).save(QStringLiteral("\uFEFFa.png")));
        ZvResponsiveImage shown("\xEF\xBB\xBF"
                                "a.png",
                                nullptr);
        QCOMPARE(shown.heightForWidth(14), 10);
        shown.setImage("a.png");
        QCOMPARE(shown.heightForWidth(14), shown.height());
        shown.setImage("\xEF\xBB\xBF"
                       "a.png");
        QCOMPARE(shown.heightForWidth(14), 10);
    }

    void fitsItself_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<bool>("isScaled");
        // Of the picture, in pixels of the widget, where each of those is one of the device.
        QTest::addColumn<QRect>("expected");
        const QSize image(100, 50);
        QTest::newRow("room to spare: centred")
            << image << QSize(200, 200) << false << QRect(50, 75, 100, 50);
        QTest::newRow("odd room to spare")
            << image << QSize(201, 201) << false << QRect(50, 75, 100, 50);
        QTest::newRow("just its size") << image << QSize(100, 50) << false << QRect(0, 0, 100, 50);
        QTest::newRow("less area: scaled")
            << image << QSize(60, 60) << true << QRect(0, 15, 60, 30);
        QTest::newRow("less area, high") << image << QSize(40, 100) << true << QRect(0, 40, 40, 20);
        QTest::newRow("less area, wide") << image << QSize(200, 20) << true << QRect(80, 0, 40, 20);
        QTest::newRow("area just below")
            << image << QSize(4'999, 1) << true << QRect(2'498, 0, 2, 1);
        QTest::newRow("same area, but low: cut off")
            << image << QSize(250, 20) << false << QRect(75, 0, 100, 20);
        QTest::newRow("more area, but low: cut off")
            << image << QSize(300, 20) << false << QRect(100, 0, 100, 20);
        QTest::newRow("more area, but narrow: cut off")
            << image << QSize(20, 300) << false << QRect(0, 125, 20, 50);
        QTest::newRow("never larger")
            << QSize(2, 2) << QSize(50, 30) << false << QRect(24, 14, 2, 2);
    }

    void fitsItself()
    {
        QFETCH(QSize, image);
        QFETCH(QSize, widget);
        QFETCH(bool, isScaled);
        QFETCH(QRect, expected);
        ZvResponsiveImage shown(picture(image.width(), image.height()), nullptr);
        const double ratio = shown.devicePixelRatioF();
        if (isScaled && ratio > 1) {
            // In pixels of the device, and taken for so many of the widget.
            const QSize target(qRound(widget.width() * ratio), qRound(widget.height() * ratio));
            const QSize size = image.scaled(target, Qt::KeepAspectRatio);
            expected = QRect(QPoint(std::max((widget.width() - size.width()) / 2, 0),
                                    std::max((widget.height() - size.height()) / 2, 0)),
                             size)
                & QRect(QPoint(), widget);
        }
        const QImage looks = look(shown, widget);
        const QRect found = painted(looks);
        const QRect onDevice(qRound(expected.x() * ratio), qRound(expected.y() * ratio),
                             qRound(expected.width() * ratio), qRound(expected.height() * ratio));
        if (ratio == 1)
            QCOMPARE(found, onDevice);
        QVERIFY2(nearlyEqual(found, onDevice), text(found) + " for " + text(onDevice));
    }

    void startsAtTheEdgeAndIsCutOffAtTheOther()
    {
        ZvResponsiveImage shown(picture(100, 50), nullptr);
        const QImage narrow = look(shown, QSize(40, 300));
        const QPoint middle(narrow.width() / 2, narrow.height() / 2);
        QCOMPARE(narrow.pixelColor(middle), QColor(Qt::red));
        QCOMPARE(narrow.pixelColor(narrow.width() - 1, middle.y()), QColor(Qt::red));
        const QImage wider = look(shown, QSize(70, 300));
        QCOMPARE(wider.pixelColor(wider.width() - 2, wider.height() / 2), QColor(Qt::blue));
    }

    void isScaledSmoothlyAndKeepsTheWhole()
    {
        // With a ratio above 1 only the upper left part is to be seen.
        ZvResponsiveImage shown(picture(100, 50), nullptr);
        const QImage looks = look(shown, QSize(60, 60));
        const double ratio = shown.devicePixelRatioF();
        const auto at = [&](double x, double y) {
            return looks.pixelColor(int(x * ratio), int(y * ratio));
        };
        if (ratio == 1) {
            QCOMPARE(at(1, 30), QColor(Qt::red));
            QCOMPARE(at(28, 30), QColor(Qt::red));
            QCOMPARE(at(31, 30), QColor(Qt::blue));
            QCOMPARE(at(58, 30), QColor(Qt::blue));
        } else if (ratio == 2) {
            QCOMPARE(at(57, 30), QColor(Qt::red));
            QCOMPARE(at(2, 2), QColor(Qt::red));
            QCOMPARE(at(2, 57), QColor(Qt::red));
        }
        // Where two of its pixels fall on one, that has a colour between theirs.
        QPixmap checked(64, 64);
        checked.fill(Qt::black);
        QPainter painter(&checked);
        for (int x = 0; x < 64; x += 2)
            painter.fillRect(x, 0, 1, 64, Qt::white);
        painter.end();
        shown.setImage(checked);
        const int grey = look(shown, QSize(32, 32)).pixelColor(10, 10).red();
        if (ratio == 1)
            QVERIFY2(grey > 100 && grey < 160, qPrintable(QString::number(grey)));
    }

    void heightFollowsFromTheWidth_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("expected");
        QTest::newRow("half") << QSize(100, 50) << 100 << 50;
        QTest::newRow("cut down") << QSize(100, 50) << 75 << 37;
        QTest::newRow("cut down, just") << QSize(100, 50) << 99 << 49;
        QTest::newRow("larger than the picture") << QSize(100, 50) << 1'000 << 500;
        QTest::newRow("thirds") << QSize(3, 1) << 5 << 1;
        QTest::newRow("nothing") << QSize(100, 50) << 0 << 0;
        QTest::newRow("towards zero") << QSize(100, 50) << -75 << -37;
        QTest::newRow("in double, not in 32 bits") << QSize(4'000, 3'000) << 2'000'000 << 1'500'000;
        QTest::newRow("more than there are integers") << QSize(1, 2'000) << 16'000'000 << INT_MAX;
    }

    void heightFollowsFromTheWidth()
    {
        QFETCH(QSize, image);
        QFETCH(int, width);
        QFETCH(int, expected);
        const ZvResponsiveImage shown(QPixmap(image), nullptr);
        QCOMPARE(shown.heightForWidth(width), expected);
    }

    void withoutAPictureTheHeightStays()
    {
        ZvResponsiveImage shown(QPixmap(), nullptr);
        shown.resize(70, 33);
        QCOMPARE(shown.heightForWidth(10), 33);
        QCOMPARE(shown.sizeHint(), QSize(70, 33));
        QVERIFY(painted(look(shown, QSize(70, 33))).isNull());
    }

    void sizeHintFollowsTheWidth()
    {
        ZvResponsiveImage shown(picture(100, 50), nullptr);
        shown.resize(75, 300);
        QCOMPARE(shown.sizeHint(), QSize(75, 37));
        shown.resize(400, 300);
        QCOMPARE(shown.sizeHint(), QSize(400, 200));
    }

    void sizeHintAsksASubclass()
    {
        class Square : public ZvResponsiveImage
        {
        public:
            using ZvResponsiveImage::ZvResponsiveImage;
            int heightForWidth(int width) const override { return width; }
        };
        Square square(picture(100, 50), nullptr);
        square.resize(80, 10);
        QCOMPARE(square.sizeHint(), QSize(80, 80));
    }

    void layoutGivesTheHeight()
    {
        QWidget window;
        auto* const layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        auto* const shown = new ZvResponsiveImage(picture(400, 200), nullptr);
        layout->addWidget(shown);
        layout->addStretch(1);
        window.resize(300, 600);
        window.show();
        QCOMPARE(shown->size(), QSize(300, 150));
        window.resize(100, 600);
        QCOMPARE(shown->size(), QSize(100, 50));
    }

    void paintsNothingBeforeTheFirstResize()
    {
        class NoResize : public QObject
        {
        public:
            bool eventFilter(QObject* /*watched*/, QEvent* event) override
            {
                return event->type() == QEvent::Resize;
            }
        };
        ZvResponsiveImage shown(picture(10, 10), nullptr);
        NoResize filter;
        shown.installEventFilter(&filter);
        QVERIFY(painted(look(shown, QSize(50, 50))).isNull());
        shown.removeEventFilter(&filter);
        QVERIFY(!painted(look(shown, QSize(51, 51))).isNull());
    }

    void resizeComesBeforeTheFirstShow()
    {
        ZvResponsiveImage shown(picture(10, 10), nullptr);
        shown.show();
        QVERIFY(!painted(shown.grab().toImage()).isNull());
    }

    void newPictureShowsAtOnce()
    {
        ZvResponsiveImage shown(picture(10, 10), nullptr);
        look(shown, QSize(50, 50));
        shown.setImage(picture(30, 20));
        const double ratio = shown.devicePixelRatioF();
        const QRect found = painted(shown.grab().toImage());
        QVERIFY(nearlyEqual(
            found,
            QRect(qRound(10 * ratio), qRound(15 * ratio), qRound(30 * ratio), qRound(20 * ratio))));
        // None takes the old one away, and a resize doesn't bring it back.
        shown.setImage(QPixmap());
        QVERIFY(painted(shown.grab().toImage()).isNull());
        QVERIFY(painted(look(shown, QSize(80, 80))).isNull());
    }

    void newPictureAsksForARepaint()
    {
        class Counting : public ZvResponsiveImage
        {
        public:
            using ZvResponsiveImage::ZvResponsiveImage;
            int paints = 0;

        protected:
            void paintEvent(QPaintEvent* event) override
            {
                ++paints;
                ZvResponsiveImage::paintEvent(event);
            }
        };
        Counting shown(picture(10, 10), nullptr);
        shown.resize(50, 50);
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QTRY_VERIFY(shown.paints > 0);
        QTest::qWait(50);
        int before = shown.paints;
        shown.setImage(picture(20, 20));
        QTRY_VERIFY(shown.paints > before);
        before = shown.paints;
        shown.setImage("");
        QTRY_VERIFY(shown.paints > before);
    }

    void fileNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("isThere");
        QVERIFY(m_dir.isValid());
        const QString file = m_dir.filePath("Bild \u00E4.png");
        QVERIFY(picture(30, 20).save(file));
        QTest::newRow("file, in UTF-8") << file.toUtf8() << true;
        QTest::newRow("resource") << QByteArray(":/libzvutil/style/tick-25.png") << true;
        QTest::newRow("nothing there") << QByteArray("/no/such/file.png") << false;
        QTest::newRow("no picture") << QByteArray(":/libzvutil/style/library.xml") << false;
        QTest::newRow("empty name") << QByteArray("") << false;
        QTest::newRow("no name") << QByteArray() << false;
    }

    void fileNames()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, isThere);
        const char* const file = name.isNull() ? nullptr : name.constData();
        ZvResponsiveImage made(file, nullptr);
        QCOMPARE(!painted(look(made, QSize(64, 64))).isNull(), isThere);
        ZvResponsiveImage changed(picture(9, 9), nullptr);
        changed.setImage(file);
        QCOMPARE(!painted(look(changed, QSize(64, 64))).isNull(), isThere);
        QCOMPARE(changed.heightForWidth(1'000) == 64, !isThere);
    }

    void anyButtonPresses_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << int(Qt::LeftButton);
        QTest::newRow("right") << int(Qt::RightButton);
        QTest::newRow("middle") << int(Qt::MiddleButton);
        QTest::newRow("back") << int(Qt::BackButton);
    }

    void anyButtonPresses()
    {
        QFETCH(int, button);
        class Parent : public QWidget
        {
        public:
            int presses = 0;

        protected:
            void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
        };
        Parent parent;
        ZvResponsiveImage shown(picture(10, 10), &parent);
        const QSignalSpy pressed(&shown, &ZvResponsiveImage::pressed);
        QTest::mousePress(&shown, Qt::MouseButton(button));
        QCOMPARE(pressed.count(), 1);
        QTest::mouseRelease(&shown, Qt::MouseButton(button));
        QCOMPARE(pressed.count(), 1);
        // Nor ignored: then it would go on to the parent.
        QCOMPARE(parent.presses, 0);
    }

    void hugeAreasWrapAround()
    {
        ZvResponsiveImage shown(picture(4'100, 4'100), nullptr);
        if (shown.devicePixelRatioF() != 1)
            QSKIP("told apart only where pixels are those of the device");
        look(shown, QSize(300, 300));
        shown.show();
        // Far more than the picture has; but in 32 bits 16,776,959, which is less than 16,810,000.
        QResizeEvent event(QSize(16'777'215, 257), shown.size());
        QCoreApplication::sendEvent(&shown, &event);
        QCOMPARE(painted(shown.grab().toImage()), QRect(21, 21, 257, 257));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_ZvResponsiveImage)

#include "tst_ZvResponsiveImage.moc"
