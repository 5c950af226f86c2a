#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>

#include "impl/styles/style_names.h"
#include "support/StdString.h"
#include "support/StyleHost.h"
#include "support/XmlRecorder.h"

#include <QColor>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <locale>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using libzvutil::ZvEditorStyle;
using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleIcon;
using libzvutil::ZvStyleLibrary;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvStyle) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvStyle>);
static_assert(std::is_nothrow_move_constructible_v<ZvStyle>);
static_assert(std::is_nothrow_move_assignable_v<ZvStyle>);

constexpr int brushCount = 28;
constexpr int iconCount = 5;

const QColor defaultAccent(0x2D, 0x7D, 0x9A);

/// A locale in which the digits 1 and 2 differ in case, and no letters do.
class OneIsTwo : public std::ctype<char>
{
protected:
    char do_toupper(char c) const override { return c == '1' ? '2' : c; }

    const char* do_toupper(char* begin, const char* end) const override
    {
        std::replace(begin, begin + (end - begin), '1', '2');
        return end;
    }
};

QString nameOf(const ZvStyle& style)
{
    return style.name().toQString();
}

std::string written(const ZvStyle& style)
{
    return zvtest::written(style, "Style");
}

int occurrences(const std::string& text, const std::string& part)
{
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// The six shades in the order in which they are computed.
std::vector<QColor> shades(const ZvStyle& style)
{
    std::vector<QColor> colours;
    for (const ZvStyleBrush brush :
         {ZvStyleBrush::AccentD1, ZvStyleBrush::AccentD2, ZvStyleBrush::AccentD3,
          ZvStyleBrush::AccentL1, ZvStyleBrush::AccentL2, ZvStyleBrush::AccentL3})
        colours.push_back(style.colour(brush).qColour());
    return colours;
}

std::vector<QColor> shadesOf(const QColor& accent)
{
    return {accent.darker(100),  accent.darker(150),  accent.darker(200),
            accent.lighter(100), accent.lighter(150), accent.lighter(200)};
}

} // namespace

class tst_ZvStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host = std::make_unique<zvtest::StyleHost>();
        QVERIFY(m_host->isValid());
    }

    void brushes_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<bool>("isRead");
        const struct
        {
            const char* name;
            ZvStyleBrush brush;
            bool isRead;
        } rows[] = {
            {"Panel", ZvStyleBrush::Panel, true},
            {"EditorEnabled", ZvStyleBrush::EditorEnabled, true},
            {"EditorDisabled", ZvStyleBrush::EditorDisabled, true},
            {"EditorFocus", ZvStyleBrush::EditorFocus, true},
            {"EditorHover", ZvStyleBrush::EditorHover, true},
            {"InteractiveEnabled", ZvStyleBrush::InteractiveEnabled, true},
            {"InteractiveHover", ZvStyleBrush::InteractiveHover, true},
            {"InteractivePressed", ZvStyleBrush::InteractivePressed, true},
            {"BorderEditorEnabled", ZvStyleBrush::BorderEditorEnabled, true},
            {"BorderEditorDisabled", ZvStyleBrush::BorderEditorDisabled, true},
            {"BorderEditorFocus", ZvStyleBrush::BorderEditorFocus, true},
            {"BorderEditorHover", ZvStyleBrush::BorderEditorHover, true},
            {"BorderInteractiveEnabled", ZvStyleBrush::BorderInteractiveEnabled, true},
            {"BorderInteractiveDisabled", ZvStyleBrush::BorderInteractiveDisabled, true},
            {"BorderInteractiveHover", ZvStyleBrush::BorderInteractiveHover, true},
            {"BorderInteractivePressed", ZvStyleBrush::BorderInteractivePressed, true},
            {"Accent", ZvStyleBrush::Accent, false},
            {"AccentL1", ZvStyleBrush::AccentL1, false},
            {"AccentL2", ZvStyleBrush::AccentL2, false},
            {"AccentL3", ZvStyleBrush::AccentL3, false},
            {"AccentD1", ZvStyleBrush::AccentD1, false},
            {"AccentD2", ZvStyleBrush::AccentD2, false},
            {"AccentD3", ZvStyleBrush::AccentD3, false},
            {"AccentForeground", ZvStyleBrush::AccentForeground, false},
            {"TextEnabled", ZvStyleBrush::TextEnabled, true},
            {"TextDisabled", ZvStyleBrush::TextDisabled, true},
            {"TextHover", ZvStyleBrush::TextHover, true},
            {"TOTAL", ZvStyleBrush::TOTAL, false},
        };
        int value = 0;
        for (const auto& row : rows) {
            QCOMPARE(int(row.brush), value);
            QTest::newRow(row.name) << value++ << row.isRead;
        }
        QCOMPARE(value, brushCount);
    }

    void brushes()
    {
        QFETCH(int, value);
        QFETCH(bool, isRead);
        const std::string name = QTest::currentDataTag();
        const auto brush = static_cast<ZvStyleBrush>(value);
        QCOMPARE(std::string(libzvutil::impl::name(brush)), name);
        QVERIFY(libzvutil::impl::brush_from_name(name.c_str())
                == (isRead ? brush : ZvStyleBrush::TOTAL));

        ZvStyle style("x");
        QCOMPARE(style.colour(brush).name().toQString().toStdString(), name);
        const bool isDerived = value >= 16 && value <= 22;
        QCOMPARE(style.colour(brush).qColour().isValid(), isDerived);

        // No entry but this one changes.
        std::vector<QColor> expected;
        expected.reserve(brushCount);
        for (int i = 0; i < brushCount; ++i)
            expected.push_back(style.color(static_cast<ZvStyleBrush>(i)));
        expected[std::size_t(value)] = QColor(1, 2, 3, 4);
        style.setColour(brush, QColor(1, 2, 3, 4));
        for (int i = 0; i < brushCount; ++i)
            QCOMPARE(style.colour(static_cast<ZvStyleBrush>(i)).qColour(),
                     expected[std::size_t(i)]);
        QCOMPARE(style.colour(brush).name().toQString().toStdString(), name);
        style.setColor(brush, QColor(5, 6, 7));
        QCOMPARE(style.color(brush).qColour(), QColor(5, 6, 7));
    }

    void icons_data()
    {
        QTest::addColumn<int>("value");
        QTest::newRow("CheckboxTick") << int(ZvStyleIcon::CheckboxTick);
        QTest::newRow("CheckboxIndeterminate") << int(ZvStyleIcon::CheckboxIndeterminate);
        QTest::newRow("Close") << int(ZvStyleIcon::Close);
        QTest::newRow("Menu") << int(ZvStyleIcon::Menu);
        QTest::newRow("TOTAL") << int(ZvStyleIcon::TOTAL);
    }

    void icons()
    {
        QFETCH(int, value);
        const std::string name = QTest::currentDataTag();
        const auto icon = static_cast<ZvStyleIcon>(value);
        QCOMPARE(std::string(libzvutil::impl::name(icon)), name);
        QVERIFY(libzvutil::impl::icon_from_name(name.c_str()) == icon);

        ZvStyle style("x");
        QCOMPARE(style.icon(icon).name().toQString().toStdString(), name);
        QCOMPARE(style.icon(icon).path().toQString(), QString());
        style.setIcon(icon, "\u00E4.svg");
        for (int i = 0; i < iconCount; ++i)
            QCOMPARE(style.icon(static_cast<ZvStyleIcon>(i)).path().toQString(),
                     i == value ? QString("\u00E4.svg") : QString());
    }

    void otherValuesAndNames()
    {
        using libzvutil::impl::name;
        for (const int value : {28, -1, 1000}) {
            QCOMPARE(std::string(name(static_cast<ZvStyleBrush>(value))), "UNDEFINED"s);
            QCOMPARE(std::string(name(static_cast<ZvStyleIcon>(value))), "UNDEFINED"s);
        }
        QCOMPARE(std::string(name(static_cast<ZvStyleIcon>(5))), "UNDEFINED"s);
        for (const char* text : {"", "panel", "PANEL", "Panel ", "UNDEFINED", "Close"})
            QVERIFY(libzvutil::impl::brush_from_name(text) == ZvStyleBrush::TOTAL);
        for (const char* text : {"", "close", "Panel"})
            QVERIFY(libzvutil::impl::icon_from_name(text) == ZvStyleIcon::TOTAL);
    }

    void construction()
    {
        QCOMPARE(nameOf(ZvStyle()), QString());
        QCOMPARE(nameOf(ZvStyle("a")), QString("a"));
        QCOMPARE(nameOf(ZvStyle("a\0b"s)), QString("a"));
        const ZvStyle style("x");
        QVERIFY(!style.isDefaultStyle());
        QCOMPARE(style.colour(ZvStyleBrush::Accent).qColour(), defaultAccent);
        QCOMPARE(shades(style), shadesOf(defaultAccent));
    }

    void accentIsTheHosts()
    {
        host::writeOption("ZvStyleAccent", "#E81123");
        const ZvStyle first("x");
        host::writeOption("ZvStyleAccent", "#107C10");
        const ZvStyle second("x");
        // Only construction from a name reads the option.
        const ZvStyle copy(first); // NOLINT(performance-unnecessary-copy-initialization)
        QCOMPARE(first.colour(ZvStyleBrush::Accent).qColour(), QColor(0xE8, 0x11, 0x23));
        QCOMPARE(copy.colour(ZvStyleBrush::Accent).qColour(), QColor(0xE8, 0x11, 0x23));
        QCOMPARE(second.colour(ZvStyleBrush::Accent).qColour(), QColor(0x10, 0x7C, 0x10));
        QCOMPARE(shades(second), shadesOf(QColor(0x10, 0x7C, 0x10)));
    }

    void accentThatIsNoColour()
    {
        host::writeOption("ZvStyleAccent", "nonsense");
        const ZvStyle style("x");
        QVERIFY(!style.colour(ZvStyleBrush::Accent).qColour().isValid());
        QCOMPARE(shades(style), shadesOf(QColor()));
    }

    void applyNeedsAnApplicationWithWidgets()
    {
        const ZvStyle style = ZvStyleLibrary().light();
        QVERIFY(!style.apply());
        QVERIFY(!style.apply(QString("QLabel {}")));
    }

    void firstShadesEqualTheAccent()
    {
        QRandomGenerator generator(20261122);
        ZvStyle style("x");
        for (int i = 0; i < 20000; ++i) {
            const QColor accent = QColor::fromRgba(generator.generate());
            style.setAccent(accent);
            QCOMPARE(style.colour(ZvStyleBrush::AccentD1).qColour().rgba(), accent.rgba());
            QCOMPARE(style.colour(ZvStyleBrush::AccentL1).qColour().rgba(), accent.rgba());
        }
    }

    void setAccentComputesTheShades()
    {
        ZvStyle style("x");
        const QColor accent(10, 200, 30, 77);
        style.setAccent(accent);
        QCOMPARE(style.colour(ZvStyleBrush::Accent).qColour(), accent);
        QCOMPARE(shades(style), shadesOf(accent));
        QCOMPARE(style.colour(ZvStyleBrush::AccentD1).qColour().rgba(), accent.rgba());
        QCOMPARE(style.colour(ZvStyleBrush::AccentL1).qColour().rgba(), accent.rgba());
        // Qt computes in another model of colours and rounds, so its operator finds them different.
        QVERIFY(style.colour(ZvStyleBrush::AccentD1).qColour() != accent);
        QVERIFY(style.colour(ZvStyleBrush::AccentL1).qColour() != accent);
        QCOMPARE(style.colour(ZvStyleBrush::AccentD3).name().toQString(), QString("AccentD3"));
        QVERIFY(!style.colour(ZvStyleBrush::AccentForeground).qColour().isValid());

        // Setting the brush alone leaves the shades.
        style.setColour(ZvStyleBrush::Accent, QColor(1, 2, 3));
        QCOMPARE(shades(style), shadesOf(accent));
    }

    void editors()
    {
        ZvStyle style("x");
        ZvEditorStyle first("Editor");
        first.setBrush("Brush", QColor(1, 1, 1));
        style.addEditor(first);
        ZvEditorStyle second("editor");
        second.setBrush("Brush", QColor(2, 2, 2));
        style.addEditor(std::move(second));

        QCOMPARE(std::string(style.editorStyle("EDITOR").name()), "Editor"s);
        QCOMPARE(style.editorColour("eDITOR", "bRUSH"), QColor(1, 1, 1));
        QCOMPARE(style.editorColour("Editor"s, "Brush"s), QColor(1, 1, 1));
        QVERIFY(!style.editorColour("Editor", "other").isValid());
        QVERIFY(!style.editorColour("other", "Brush").isValid());
        QVERIFY(!style.editorColour("Edito", "Brush").isValid());
        QCOMPARE(std::string(style.editorStyle("other").name()), ""s);
        QCOMPARE(occurrences(written(style), "<Editor>"), 2);

        // By value.
        ZvEditorStyle copy = style.editorStyle("Editor");
        copy.setBrush("Brush", QColor(9, 9, 9));
        QCOMPARE(style.editorColour("Editor", "Brush"), QColor(1, 1, 1));
    }

    void editorNamesAreComparedByTheGlobalLocale()
    {
        ZvStyle style("x");
        ZvEditorStyle editor("Plan1");
        editor.setBrush("Brush", QColor(1, 1, 1));
        style.addEditor(editor);
        const auto found = [&style](const char* name) {
            return std::string(style.editorStyle(name).name()) + '/'
                + style.editorColour(name, "Brush").name().toStdString();
        };
        QCOMPARE(found("pLAN1"), "Plan1/#010101"s);
        QCOMPARE(found("Plan2"), "/#000000"s);
        const std::locale before =
            std::locale::global(std::locale(std::locale::classic(), new OneIsTwo));
        const std::string unequal = found("pLAN1");
        const std::string equal = found("Plan2");
        style.setEditorColour("Plan2", "Brush", QColor(2, 2, 2));
        std::locale::global(before);
        // This locale has no small letters.
        QCOMPARE(unequal, "/#000000"s);
        QCOMPARE(equal, "Plan1/#010101"s);
        QCOMPARE(found("plan1"), "Plan1/#020202"s);
    }

    void setEditorColourAppendsInEveryCase()
    {
        ZvStyle style("x");
        ZvEditorStyle editor("Testplan");
        editor.setBrush("CommentText", QColor(1, 1, 1));
        editor.setBrush("ErrorText", QColor(2, 2, 2));
        style.addEditor(editor);

        style.setEditorColour("TESTPLAN", "commenttext", QColor(3, 3, 3));
        QCOMPARE(style.editorColour("testplan", "COMMENTTEXT"), QColor(3, 3, 3));
        QCOMPARE(style.editorColour("Testplan"s, "ErrorText"s), QColor(2, 2, 2));
        const std::string text = written(style);
        QVERIFY2(text.find("<Editors>"
                           "<Editor>[name=Testplan]<Brushes>"
                           "<Brush>[name=commenttext][colour=#030303]</Brush>"
                           "<Brush>[name=ErrorText][colour=#020202]</Brush></Brushes></Editor>"
                           "<Editor>[name=TESTPLAN]<Brushes>"
                           "<Brush>[name=commenttext][colour=#030303]</Brush></Brushes></Editor>"
                           "</Editors>")
                     != std::string::npos,
                 text.c_str());

        style.setEditorColour("New"s, "Brush"s, QColor(4, 4, 4));
        QCOMPARE(style.editorColour("New", "Brush"), QColor(4, 4, 4));
        QCOMPARE(occurrences(written(style), "<Editor>"), 3);
        style.setEditorColour("New", "Brush", QColor(5, 5, 5));
        QCOMPARE(style.editorColour("New", "Brush"), QColor(5, 5, 5));
        QCOMPARE(occurrences(written(style), "<Editor>"), 4);
    }

    void setEditorColourWithNamesOfItsOwn()
    {
        ZvStyle style("x");
        style.addEditor(ZvEditorStyle("Editor"));
        const ZvEditorStyle editor = style.editorStyle("Editor");
        for (int i = 0; i < 20; ++i)
            style.setEditorColour(editor.name(), "Brush", QColor(i, 0, 0));
        QCOMPARE(style.editorColour("Editor", "Brush"), QColor(19, 0, 0));
    }

    void duplicate()
    {
        ZvStyle source("a");
        source.setColour(ZvStyleBrush::Panel, QColor(1, 2, 3));
        source.setAccent(QColor(50, 60, 70));
        source.setIcon(ZvStyleIcon::Menu, "m.svg");
        source.setEditorColour("Editor", "Brush", QColor(4, 5, 6));
        const ZvStyle copy = source.duplicate("b");
        QCOMPARE(nameOf(copy), QString("b"));
        QCOMPARE(nameOf(source), QString("a"));
        std::string expected = written(source);
        expected.replace(expected.find("[name=a]"), 8, "[name=b]");
        QCOMPARE(written(copy), expected);
        QCOMPARE(shades(copy), shades(source));
        QVERIFY(!source.isDefaultStyle() && !copy.isDefaultStyle());

        // The flag doesn't come along, but a copy has it.
        const libzvutil::ZvStyleLibrary library;
        QVERIFY(library.dark().isDefaultStyle());
        QVERIFY(!library.dark().duplicate("b").isDefaultStyle());
        QVERIFY(!library.dark().duplicate("Dark").isDefaultStyle());
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const ZvStyle same(library.dark());
        QVERIFY(same.isDefaultStyle());
    }

    void copiesShareNothing()
    {
        ZvStyle source("a");
        source.setEditorColour("Editor", "Brush", QColor(1, 1, 1));
        const ZvStyle copy(source);
        ZvStyle assigned("other");
        QVERIFY(&(assigned = source) == &assigned);
        const std::string before = written(source);
        source.setColour(ZvStyleBrush::Panel, QColor(9, 9, 9));
        source.setIcon(ZvStyleIcon::Close, "x");
        source.setEditorColour("Editor", "Brush", QColor(9, 9, 9));
        QCOMPARE(written(copy), before);
        QCOMPARE(written(assigned), before);
        const ZvStyle& self = assigned;
        assigned = self;
        QCOMPARE(written(assigned), before);
    }

    void moves()
    {
        ZvStyle source("a");
        const std::string before = written(source);
        const QColor* const place = &source.colour(ZvStyleBrush::Panel).qColour();
        ZvStyle target(std::move(source));
        QVERIFY(&target.colour(ZvStyleBrush::Panel).qColour() == place);
        source = std::move(target); // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(written(source), before);
    }

    void writing()
    {
        ZvStyle style("a");
        style.setColour(ZvStyleBrush::Panel, QColor(1, 2, 3, 4));
        style.setIcon(ZvStyleIcon::Close, "close.svg");
        std::string expected = "<Style>[name=a]<Brushes>";
        for (int i = 0; i < brushCount; ++i) {
            const auto brush = static_cast<ZvStyleBrush>(i);
            const bool isAccent = i >= 16 && i <= 22;
            std::string colour = i == 0 ? "#010203" : "#000000";
            if (isAccent)
                colour = style.colour(brush).qColour().name().toStdString();
            expected += "<Brush>[name="s + libzvutil::impl::name(brush) + "][colour=" + colour
                + "]</Brush>";
        }
        expected += "</Brushes><Icons>"
                    "<Icon>[name=CheckboxTick][path=]</Icon>"
                    "<Icon>[name=CheckboxIndeterminate][path=]</Icon>"
                    "<Icon>[name=Close][path=close.svg]</Icon>"
                    "<Icon>[name=Menu][path=]</Icon>"
                    "<Icon>[name=TOTAL][path=]</Icon>"
                    "</Icons><Editors></Editors></Style>";
        QCOMPARE(written(style), expected);
    }

    void currentStyleIsTheManagers() { QCOMPARE(nameOf(ZvStyle::Current()), QString("Light")); }

private:
    std::unique_ptr<zvtest::StyleHost> m_host;
};

QTEST_GUILESS_MAIN(tst_ZvStyle)
#include "tst_ZvStyle.moc"
