#include <zvutil/ZvNamedColour.h>

#include <QColor>
#include <QTest>

#include <type_traits>
#include <utility>

using libzvutil::ZvNamedColour;

namespace {

static_assert(sizeof(ZvNamedColour) == sizeof(void*));
static_assert(!std::is_polymorphic_v<ZvNamedColour>);
static_assert(std::is_nothrow_move_constructible_v<ZvNamedColour>);
static_assert(std::is_nothrow_move_assignable_v<ZvNamedColour>);

QString nameOf(const ZvNamedColour& colour)
{
    return colour.name().toQString();
}

} // namespace

class tst_ZvNamedColour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction()
    {
        const ZvNamedColour empty;
        QCOMPARE(nameOf(empty), QString());
        QVERIFY(!empty.qColour().isValid());
        QCOMPARE(empty.colourString().toQString(), QString("#000000"));

        const ZvNamedColour made("a", QColor(1, 2, 3, 4));
        QCOMPARE(nameOf(made), QString("a"));
        QCOMPARE(made.qColour(), QColor(1, 2, 3, 4));
        const QColor& converted = made;
        QVERIFY(&converted == &made.qColour());
    }

    void colourText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("colour");
        QTest::addColumn<QString>("written");
        const auto row = [](const char* name, const char* text, const QColor& colour,
                            const char* written) {
            QTest::newRow(name) << QString::fromLatin1(text) << colour
                                << QString::fromLatin1(written);
        };
        row("six digits", "#f0f0f0", QColor(0xF0, 0xF0, 0xF0), "#f0f0f0");
        row("upper case", "#00CC6A", QColor(0, 0xCC, 0x6A), "#00cc6a");
        row("accent", "#2D7D9A", QColor(0x2D, 0x7D, 0x9A), "#2d7d9a");
        row("alpha first, and lost", "#61000000", QColor(0, 0, 0, 0x61), "#000000");
        row("alpha and colour", "#61123456", QColor(0x12, 0x34, 0x56, 0x61), "#123456");
        row("no hash", "ffffff", QColor(), "#000000");
        row("no hash, with alpha", "99ffffff", QColor(), "#000000");
        row("empty", "", QColor(), "#000000");
        row("name", "red", QColor(255, 0, 0), "#ff0000");
        row("no trimming before a hash", " #ffffff", QColor(), "#000000");
        row("too few digits", "#f", QColor(), "#000000");
    }

    void colourText()
    {
        QFETCH(QString, text);
        QFETCH(QColor, colour);
        QFETCH(QString, written);
        const ZvNamedColour made("name", text.toUtf8().constData());
        QCOMPARE(made.qColour(), colour);
        QCOMPARE(made.qColour().isValid(), colour.isValid());
        QCOMPARE(made.qColour().alpha(), colour.alpha());
        QCOMPARE(made.colourString().toQString(), written);
    }

    void assignment()
    {
        ZvNamedColour colour("a", "#010203");
        QVERIFY(&(colour = QColor(4, 5, 6)) == &colour);
        QCOMPARE(nameOf(colour), QString("a"));
        QCOMPARE(colour.qColour(), QColor(4, 5, 6));

        colour.setColour(QColor(7, 8, 9));
        QCOMPARE(nameOf(colour), QString("a"));
        QCOMPARE(colour.qColour(), QColor(7, 8, 9));

        const ZvNamedColour other("b", "#0a0b0c");
        const QColor* const place = &colour.qColour();
        QVERIFY(&(colour = other) == &colour);
        QCOMPARE(nameOf(colour), QString("b"));
        QCOMPARE(colour.qColour(), QColor(10, 11, 12));
        QVERIFY(&colour.qColour() == place);

        const ZvNamedColour& self = colour;
        colour = self;
        QCOMPARE(nameOf(colour), QString("b"));
    }

    void copiesShareNothing()
    {
        ZvNamedColour source("a", "#010203");
        const ZvNamedColour copy(source);
        source = ZvNamedColour("b", "#040506");
        QCOMPARE(nameOf(copy), QString("a"));
        QCOMPARE(copy.qColour(), QColor(1, 2, 3));
    }

    void moves()
    {
        ZvNamedColour source("a", "#010203");
        const QColor* const place = &source.qColour();
        ZvNamedColour target(std::move(source));
        QVERIFY(&target.qColour() == place);
        source = std::move(target); // NOLINT(bugprone-use-after-move): that is the test
        QVERIFY(&source.qColour() == place);
        ZvNamedColour& self = source;
        source = std::move(self);
        QVERIFY(&source.qColour() == place);
    }
};

QTEST_APPLESS_MAIN(tst_ZvNamedColour)
#include "tst_ZvNamedColour.moc"
