#include <zvutil/ZvEditorStyle.h>

#include "support/StdString.h"
#include "support/XmlRecorder.h"

#include <QColor>
#include <QTest>

#include <string>
#include <type_traits>
#include <utility>

using libzvutil::ZvEditorStyle;
using libzvutil::ZvNamedColour;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvEditorStyle) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvEditorStyle>);
static_assert(std::is_nothrow_move_constructible_v<ZvEditorStyle>);
static_assert(std::is_nothrow_move_assignable_v<ZvEditorStyle>);

std::string written(const ZvEditorStyle& style)
{
    return zvtest::written(style, "Editor");
}

} // namespace

class tst_ZvEditorStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction()
    {
        QCOMPARE(std::string(ZvEditorStyle().name()), ""s);
        QCOMPARE(std::string(ZvEditorStyle("a").name()), "a"s);
        QCOMPARE(std::string(ZvEditorStyle("a\0b"s).name()), "a"s);
        QVERIFY(!ZvEditorStyle("a").brush("x").isValid());
        QCOMPARE(written(ZvEditorStyle("a")), "<Editor>[name=a]<Brushes></Brushes></Editor>"s);
    }

    void brushesAreReplacedOrAppended()
    {
        ZvEditorStyle style("a");
        style.setBrush("One", QColor(1, 1, 1));
        style.setBrush("Two", "#020202");
        style.setBrush(ZvNamedColour("Three", "#030303"));
        const ZvNamedColour four("Four", "#040404");
        style.setBrush(four);
        QCOMPARE(style.brush("One"), QColor(1, 1, 1));
        QCOMPARE(style.brush("two"), QColor(2, 2, 2));
        QCOMPARE(style.brush("THREE"), QColor(3, 3, 3));
        QVERIFY(!style.brush("Five").isValid());

        // In place, with the new spelling of the name.
        style.setBrush("TWO", QColor(9, 9, 9));
        style.setBrush(ZvNamedColour("three", "nonsense"));
        QCOMPARE(written(style),
                 "<Editor>[name=a]<Brushes>"
                 "<Brush>[name=One][colour=#010101]</Brush>"
                 "<Brush>[name=TWO][colour=#090909]</Brush>"
                 "<Brush>[name=three][colour=#000000]</Brush>"
                 "<Brush>[name=Four][colour=#040404]</Brush>"
                 "</Brushes></Editor>"s);
    }

    void alphaIsKeptButNotWritten()
    {
        ZvEditorStyle style("a");
        style.setBrush("x", QColor(1, 2, 3, 4));
        QCOMPARE(style.brush("x").alpha(), 4);
        QCOMPARE(
            written(style),
            "<Editor>[name=a]<Brushes><Brush>[name=x][colour=#010203]</Brush></Brushes></Editor>"s);
    }

    void copiesShareNothing()
    {
        ZvEditorStyle source("a");
        source.setBrush("x", QColor(1, 1, 1));
        const ZvEditorStyle copy(source);
        ZvEditorStyle assigned("other");
        assigned = source;
        source.setBrush("x", QColor(2, 2, 2));
        QCOMPARE(copy.brush("x"), QColor(1, 1, 1));
        QCOMPARE(assigned.brush("x"), QColor(1, 1, 1));
        QCOMPARE(std::string(assigned.name()), "a"s);
        const ZvEditorStyle& self = assigned;
        assigned = self;
        QCOMPARE(assigned.brush("x"), QColor(1, 1, 1));
    }

    void moves()
    {
        ZvEditorStyle source("a");
        const char* const place = source.name();
        ZvEditorStyle target(std::move(source));
        QVERIFY(target.name() == place);
        source = std::move(target); // NOLINT(bugprone-use-after-move): that is the test
        QVERIFY(source.name() == place);
    }
};

QTEST_APPLESS_MAIN(tst_ZvEditorStyle)
#include "tst_ZvEditorStyle.moc"
