#include <zvutil/ZvProgressLineEdit.h>

#include "support/Warnings.h"

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <QStyleFactory>
#include <QTest>

#include <type_traits>

namespace {

const QColor white(Qt::white);
const QColor done = white.darker(110);

QBrush base(const QWidget& widget)
{
    return widget.palette().brush(QPalette::Active, QPalette::Base);
}

QGradientStops stops(const QWidget& widget)
{
    const QGradient* const gradient = base(widget).gradient();
    return gradient ? gradient->stops() : QGradientStops();
}

/// How often Qt warns of a stop outside the range while \p change runs.
template <typename Change>
int refusedStops(Change change)
{
    const QStringList warnings = zvtest::warningsOf(change);
    return warnings.filter(QString("QGradient::setColorAt: ")).size();
}

} // namespace

class tst_ZvProgressLineEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        setBase(white);
    }

    void shape()
    {
        static_assert(std::is_base_of_v<QLineEdit, ZvProgressLineEdit>);
        static_assert(!std::is_convertible_v<QWidget*, ZvProgressLineEdit>);
        QWidget parent;
        const auto* const edit = new ZvProgressLineEdit(&parent);
        QCOMPARE(edit->metaObject(), &QLineEdit::staticMetaObject);
        QCOMPARE(edit->parentWidget(), &parent);
        QCOMPARE(edit->text(), QString());
        QCOMPARE(edit->progressMaximum(), 0);
        QCOMPARE(edit->progressValue(), 0);
        QCOMPARE(base(*edit), QLineEdit().palette().brush(QPalette::Active, QPalette::Base));
        const auto* const other = new ZvProgressLineEdit(QString("text"), &parent);
        QCOMPARE(other->parentWidget(), &parent);
        QCOMPARE(other->text(), QString("text"));
        QCOMPARE(other->progressMaximum(), 0);
        QCOMPARE(other->progressValue(), 0);
    }

    void gradient_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("value");
        QTest::addColumn<QGradientStops>("expected");
        QTest::addColumn<int>("refused");
        using Stops = QGradientStops;
        QTest::newRow("a quarter")
            << 100 << 25 << Stops{{0.249, done}, {0.25, white}, {0.251, white}} << 0;
        QTest::newRow("nearly all")
            << 10'000 << 9'995 << Stops{{0.9985, done}, {0.9995, white}} << 1;
        QTest::newRow("a third, of negative numbers")
            << -300 << -100
            << Stops{{1 / 3.0 - 0.001, done}, {1 / 3.0, white}, {1 / 3.0 + 0.001, white}} << 0;
        QTest::newRow("hardly anything")
            << 2'000 << 1 << Stops{{0.0005, white}, {0.0015, white}} << 1;
        QTest::newRow("no maximum") << 0 << 5 << Stops{{0.0, white}, {0.001, white}} << 1;
        // Without any stop Qt has a gradient go from black to white.
        const Stops none{{0.0, Qt::black}, {1.0, Qt::white}};
        QTest::newRow("more than all") << 100 << 150 << none << 3;
        QTest::newRow("just more than all") << 2'000 << 2'001 << Stops{{0.9995, done}} << 2;
        QTest::newRow("less than nothing") << 100 << -10 << none << 3;
        QTest::newRow("just less than nothing") << 2'000 << -1 << Stops{{0.0005, white}} << 2;
    }

    void gradient()
    {
        QFETCH(int, maximum);
        QFETCH(int, value);
        QFETCH(QGradientStops, expected);
        QFETCH(int, refused);
        ZvProgressLineEdit edit;
        edit.resize(200, 30);
        edit.setProgressMaximum(maximum);
        QCOMPARE(refusedStops([&] { edit.setProgressValue(value); }), refused);
        QCOMPARE(edit.progressMaximum(), maximum);
        QCOMPARE(edit.progressValue(), value);
        const QGradientStops found = stops(edit);
        QCOMPARE(found.size(), expected.size());
        for (int i = 0; i < found.size(); ++i) {
            QVERIFY2(qAbs(found.at(i).first - expected.at(i).first) < 1e-12,
                     qPrintable(QString::number(found.at(i).first, 'g', 17)));
            QCOMPARE(found.at(i).second, expected.at(i).second);
        }
        const auto* const linear = static_cast<const QLinearGradient*>(base(edit).gradient());
        QCOMPARE(linear->type(), QGradient::LinearGradient);
        QCOMPARE(linear->spread(), QGradient::PadSpread);
        QCOMPARE(linear->start(), QPointF(0, 0));
        QCOMPARE(linear->finalStop(), QPointF(199, 0));
    }

    void solid_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("value");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("all") << 100 << 100 << done;
        QTest::newRow("all, of a negative number") << -7 << -7 << done;
        QTest::newRow("nothing") << 100 << 0 << white;
        QTest::newRow("nothing of nothing") << 0 << 0 << white;
        QTest::newRow("nothing of a negative number") << -7 << 0 << white;
    }

    void solid()
    {
        QFETCH(int, maximum);
        QFETCH(int, value);
        QFETCH(QColor, expected);
        ZvProgressLineEdit edit;
        edit.setProgressMaximum(1'000);
        edit.setProgressValue(500);
        // Qt may warn on the way there.
        refusedStops([&] {
            edit.setProgressMaximum(maximum);
            edit.setProgressValue(value);
        });
        QCOMPARE(base(edit), QBrush(expected, Qt::SolidPattern));
    }

    void maximumAloneMovesTheEdge()
    {
        ZvProgressLineEdit edit;
        edit.setProgressMaximum(100);
        edit.setProgressValue(50);
        edit.setProgressMaximum(200);
        QCOMPARE(stops(edit).at(1).first, 0.25);
        edit.setProgressMaximum(50);
        QCOMPARE(base(edit), QBrush(done, Qt::SolidPattern));
    }

    void allGroupsOfThePaletteAreWritten()
    {
        ZvProgressLineEdit edit;
        edit.setProgressMaximum(100);
        edit.setProgressValue(50);
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            QCOMPARE(edit.palette().brush(group, QPalette::Base), base(edit));
            QCOMPARE(edit.palette().brush(group, QPalette::Base).style(),
                     Qt::LinearGradientPattern);
        }
        edit.clearProgressBar();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(edit.palette().brush(group, QPalette::Base), QBrush(white));
    }

    void clearLeavesTheMaximum()
    {
        ZvProgressLineEdit edit;
        edit.setProgressMaximum(100);
        edit.setProgressValue(50);
        edit.clearProgressBar();
        QCOMPARE(edit.progressMaximum(), 100);
        QCOMPARE(edit.progressValue(), 0);
        QCOMPARE(base(edit), QBrush(white));
    }

    void resizeWaitsForTheNextValue()
    {
        ZvProgressLineEdit edit;
        edit.resize(200, 30);
        edit.setProgressMaximum(100);
        edit.setProgressValue(50);
        edit.show();
        edit.resize(400, 30);
        const auto end = [&edit] {
            return static_cast<const QLinearGradient*>(base(edit).gradient())->finalStop();
        };
        QCOMPARE(end(), QPointF(199, 0));
        edit.setProgressValue(51);
        QCOMPARE(end(), QPointF(399, 0));
    }

    void styleChangeShowsWithTheNextValue()
    {
        ZvProgressLineEdit edit;
        edit.setProgressMaximum(100);
        edit.setProgressValue(50);
        const QBrush before = base(edit);
        setBase(Qt::cyan);
        QEvent other(QEvent::FontChange);
        QCoreApplication::sendEvent(&edit, &other);
        edit.setProgressValue(50);
        QCOMPARE(base(edit), before);
        QEvent change(QEvent::StyleChange);
        QCoreApplication::sendEvent(&edit, &change);
        QCOMPARE(base(edit), before);
        edit.setProgressValue(51);
        QCOMPARE(stops(edit).at(0).second, QColor(Qt::cyan).darker(110));
        QCOMPARE(stops(edit).at(1).second, QColor(Qt::cyan));
        edit.setProgressValue(0);
        QCOMPARE(base(edit), QBrush(Qt::cyan));
        setBase(white);
    }

    void eventGoesOnToTheLineEdit()
    {
        // Which lays its text out anew in the new font.
        ZvProgressLineEdit edit(QString(100, QLatin1Char('m')), nullptr);
        edit.resize(300, 80);
        const int before = edit.cursorPositionAt(QPoint(200, 40));
        QFont font = edit.font();
        font.setPixelSize(60);
        edit.setFont(font);
        const int after = edit.cursorPositionAt(QPoint(200, 40));
        QVERIFY2(after < before, qPrintable(QString("%1, %2").arg(before).arg(after)));
    }

    void backgroundIsPainted()
    {
        ZvProgressLineEdit edit;
        edit.setFrame(false);
        edit.resize(201, 40);
        edit.setProgressMaximum(100);
        edit.setProgressValue(30);
        const QImage image = edit.grab().toImage();
        const qreal ratio = image.devicePixelRatioF();
        const auto at = [&](int x) { return image.pixel(int(x * ratio), int(3 * ratio)); };
        // The edge stands at 60.
        for (const int x : {0, 20, 58})
            QCOMPARE(at(x), done.rgb());
        for (const int x : {62, 100, 200})
            QCOMPARE(at(x), white.rgb());
    }

private:
    static void setBase(const QColor& color)
    {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Base, color);
        QApplication::setPalette(palette);
    }
};

QTEST_MAIN(tst_ZvProgressLineEdit)

#include "tst_ZvProgressLineEdit.moc"
