#include "UserStyles.h"

#include <zvutil/ZvStyleLibrary.h>

#include <zvutil/ZvException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include "support/BuiltInStyles.h"
#include "support/Files.h"
#include "support/StdString.h"
#include "support/StyleHost.h"
#include "support/XmlRecorder.h"

#include <QColor>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleIcon;
using libzvutil::ZvStyleLibrary;
using zvtest::builtIn;
using zvtest::styleWithPanel;
using zvutil::ZvFilePath;
using namespace std::string_literals;
namespace xml = zvutil::experimental::xml;

namespace {

static_assert(sizeof(ZvStyleLibrary) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvStyleLibrary>);
static_assert(std::is_nothrow_move_constructible_v<ZvStyleLibrary>);
static_assert(std::is_nothrow_move_assignable_v<ZvStyleLibrary>);

template <typename Style, typename = void>
struct CanUpdate : std::false_type
{
};
template <typename Style>
struct CanUpdate<
    Style, std::void_t<decltype(std::declval<ZvStyleLibrary&>().update(std::declval<Style>()))>>
    : std::true_type
{
};

// A style can be made from a name, so a call with a name has to be refused by name.
static_assert(CanUpdate<const ZvStyle&>::value && CanUpdate<ZvStyle&&>::value);
static_assert(!CanUpdate<const char (&)[5]>::value && !CanUpdate<const std::string&>::value);

/// A brush by its name, as a file has it.
QColor brush(const ZvStyle& style, const QString& name)
{
    for (int i = 0; i <= int(ZvStyleBrush::TOTAL); ++i) {
        const auto& colour = style.colour(static_cast<ZvStyleBrush>(i));
        if (colour.name().toQString() == name)
            return colour.qColour();
    }
    return {};
}

QString iconPath(const ZvStyle& style, const QString& name)
{
    for (int i = 0; i <= int(ZvStyleIcon::TOTAL); ++i) {
        const auto& icon = style.icon(static_cast<ZvStyleIcon>(i));
        if (icon.name().toQString() == name)
            return icon.path().toQString();
    }
    return {};
}

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

std::string written(const ZvStyle& style)
{
    return zvtest::written(style, "Style");
}

std::string notFound(const ZvStyleLibrary& library, const char* name)
{
    try {
        (void)library.style(name);
    } catch (const zvutil::ZvException& error) {
        return error.what();
    }
    return "found";
}

/// The names and colours of the accents in a saved library.
QStringList accentsIn(const QByteArray& document)
{
    QStringList accents;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == "Accent") {
            const QXmlStreamAttributes attributes = reader.attributes();
            accents += attributes.value("name") + QLatin1Char(' ') + attributes.value("colour");
        }
    }
    return accents;
}

QByteArray document(const QByteArray& styles, const QByteArray& accents = QByteArray())
{
    return "<StyleLibrary><Styles>" + styles + "</Styles><Accents>" + accents
        + "</Accents></StyleLibrary>";
}

QByteArray style(const QByteArray& name, const QByteArray& brushes = QByteArray(),
                 const QByteArray& rest = QByteArray())
{
    return "<Style name=\"" + name + "\"><Brushes>" + brushes + "</Brushes><Icons/>" + rest
        + "</Style>";
}

} // namespace

class tst_ZvStyleLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host = std::make_unique<zvtest::StyleHost>();
        QVERIFY(m_host->isValid());
    }

    void cleanup()
    {
        // The files of libraries are closed by the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void builtInStyles()
    {
        const ZvStyleLibrary library;
        QCOMPARE(library.names(), builtIn);
        QVERIFY(library.light().isDefaultStyle());
        QVERIFY(library.dark().isDefaultStyle());
        QCOMPARE(library.light().name().toQString(), QString("Light"));
        QCOMPARE(library.dark().name().toQString(), QString("Dark"));
    }

    void builtInBrushes_data()
    {
        QTest::addColumn<QString>("light");
        QTest::addColumn<QString>("dark");
        for (const auto& row : zvtest::builtInBrushes)
            QTest::newRow(row.name) << utf8(row.light) << utf8(row.dark);
        QCOMPARE(std::size(zvtest::builtInBrushes), std::size_t(19));
    }

    void builtInBrushes()
    {
        QFETCH(QString, light);
        QFETCH(QString, dark);
        const QString name = utf8(QTest::currentDataTag());
        const ZvStyleLibrary library;
        QCOMPARE(brush(library.light(), name), QColor(light));
        QCOMPARE(brush(library.dark(), name), QColor(dark));
    }

    void builtInOddities()
    {
        const ZvStyleLibrary library;
        QVERIFY(!brush(library.light(), "BorderEditorDisabled").isValid());
        QVERIFY(!brush(library.dark(), "TextHover").isValid());
        QCOMPARE(brush(library.light(), "TextDisabled").alpha(), 0x61);
        QCOMPARE(brush(library.dark(), "Accent"), QColor(0x2D, 0x7D, 0x9A));
        QVERIFY(!brush(library.dark(), "AccentForeground").isValid());
        QVERIFY(!brush(library.dark(), "TOTAL").isValid());
    }

    void builtInIcons_data()
    {
        QTest::addColumn<QString>("light");
        QTest::addColumn<QString>("dark");
        for (const auto& row : zvtest::builtInIcons)
            QTest::newRow(row.name) << utf8(row.light) << utf8(row.dark);
        QTest::newRow("TOTAL") << QString() << QString();
    }

    void builtInIcons()
    {
        QFETCH(QString, light);
        QFETCH(QString, dark);
        const QString name = utf8(QTest::currentDataTag());
        const ZvStyleLibrary library;
        QCOMPARE(iconPath(library.light(), name), light);
        QCOMPARE(iconPath(library.dark(), name), dark);
    }

    void builtInEditors_data()
    {
        QTest::addColumn<QString>("colour");
        for (const auto& row : zvtest::builtInEditorBrushes)
            QTest::newRow(row.name) << utf8(row.colour);
        QCOMPARE(std::size(zvtest::builtInEditorBrushes), std::size_t(8));
    }

    void builtInEditors()
    {
        QFETCH(QString, colour);
        const char* const name = QTest::currentDataTag();
        const ZvStyleLibrary library;
        QCOMPARE(library.light().editorColour("Testplan", name), QColor(colour));
        QCOMPARE(library.dark().editorColour("Testplan", name), QColor(colour));
        QCOMPARE(QString::fromStdString(written(library.dark())).count(QString("<Editor>")), 1);
    }

    void builtInAccents()
    {
        ZvStyleLibrary().save(libraryPath());
        QStringList expected;
        for (const auto& row : zvtest::builtInAccents)
            expected += utf8(row.name) + QLatin1Char(' ') + utf8(row.colour).toLower();
        QCOMPARE(expected.size(), 48);
        QCOMPARE(accentsIn(zvtest::contentOf(m_host->libraryFile())), expected);
    }

    void builtInFile()
    {
        QFile file(":/libzvutil/style/library.xml");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("<StyleLibrary>"));

        // The inert third style.
        const QString text = QString::fromUtf8(bytes);
        const QString inert = text.section("<!--", 1).section("-->", 0, 0);
        QCOMPARE(inert.count(QString("name=\"HighContrast\"")), 1);
        QCOMPARE(inert.count(QString("colour=\"\"")), 19);
        for (const auto& row : zvtest::builtInBrushes)
            QVERIFY(inert.contains(utf8(row.name)));

        // "colour" comes first on accents, icons are "StyleIcon"s.
        QCOMPARE(
            text.count(QRegularExpression("<Accent colour=\"#[0-9A-F]{6}\" name=\"[^\"]+\"/>")),
            48);
        QCOMPARE(text.count(QString("<StyleIcon ")), 8);
    }

    void unknownStyle()
    {
        const ZvStyleLibrary library;
        QCOMPARE(notFound(library, "Blue"), "Style not found: Blue"s);
        QCOMPARE(notFound(library, ""), "Style not found: "s);
        QCOMPARE(notFound(library, "LIGHT"), "found"s);
        QCOMPARE(notFound(library, "Light "), "Style not found: Light "s);
    }

    void addKeepsTheFirstComer()
    {
        ZvStyleLibrary library;
        ZvStyleLibrary other = empty();
        other.update(styleWithPanel("One", Qt::red));
        other.update(styleWithPanel("light", Qt::red));
        other.update(styleWithPanel("Two", Qt::blue));
        const std::string light = written(library.light());
        library.add(other);
        QCOMPARE(library.names(), (QStringList{"Light", "Dark", "One", "Two"}));
        QCOMPARE(written(library.light()), light);
        QVERIFY(library.light().isDefaultStyle());
        QVERIFY(!library.style("One").isDefaultStyle());
        QCOMPARE(other.names().size(), 3);

        // Once more, and itself.
        library.add(other);
        const ZvStyleLibrary& self = library;
        library.add(self);
        QCOMPARE(library.names().size(), 4);
    }

    void addOfOneThatGoesMovesTheStyles()
    {
        ZvStyleLibrary library;
        ZvStyleLibrary other = empty();
        other.update(styleWithPanel("One", Qt::red));
        const auto* const place = &other.style("One").name();
        library.add(std::move(other));
        QVERIFY(&library.style("One").name() == place);
        QCOMPARE(library.style("One").colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::red));
    }

    void addOfOneThatGoesEmptiesIt()
    {
        ZvStyleLibrary library = empty();
        library.update(styleWithPanel("Two", Qt::green));
        ZvStyleLibrary other;
        other.update(styleWithPanel("One", Qt::red));
        other.update(styleWithPanel("Two", Qt::blue));
        library.add(std::move(other));
        QCOMPARE(library.names().size(), 4);
        // What has been skipped goes, too, and it can be used again.
        QCOMPARE(other.names(), QStringList()); // NOLINT(bugprone-use-after-move)
        QCOMPARE(notFound(other, "Two"), "Style not found: Two"s);
        other.update(styleWithPanel("Three", Qt::red));
        QCOMPARE(other.names(), QStringList{"Three"});

        // All its names are known.
        ZvStyleLibrary& self = library;
        library.add(std::move(self));
        QCOMPARE(library.names().size(), 4);
        QCOMPARE(library.style("Two").colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::green));
    }

    void byteOrderMarkIsPartOfAnIconsName()
    {
        QVERIFY(m_host->write(m_host->libraryFile(),
                              "<StyleLibrary><Styles><Style name='Mine'><Brushes/><Icons>"
                              "<Icon name='Close' path='&#xFEFF;a.png'/>"
                              "</Icons></Style></Styles></StyleLibrary>"));
        const ZvStyleLibrary library(libraryPath());
        QCOMPARE(std::string(library.style("Mine").icon(ZvStyleIcon::Close).path().c_str()),
                 "\xEF\xBB\xBF"
                 "a.png"s);
    }

    void addOfAFile()
    {
        QVERIFY(m_host->write(m_host->libraryFile(), document(style("A") + style("dark"))));
        ZvStyleLibrary library;
        library.add(libraryPath());
        QCOMPARE(library.names(), builtIn + QStringList{"A"});
    }

    void addNeverChangesTheAccents()
    {
        QVERIFY(m_host->write(m_host->libraryFile(),
                              document(style("A"), "<Accent name=\"x\" colour=\"#010203\"/>")));
        const ZvStyleLibrary loaded(libraryPath());
        ZvStyleLibrary library = loaded;
        library.add(ZvStyleLibrary());
        library.save(libraryPath());
        QCOMPARE(accentsIn(zvtest::contentOf(m_host->libraryFile())), QStringList{"x #010203"});
    }

    void update()
    {
        ZvStyleLibrary library;
        const std::string dark = written(library.dark());
        library.update(styleWithPanel("DARK", Qt::red));
        QCOMPARE(written(library.dark()), dark);
        QCOMPARE(library.names(), builtIn);

        const ZvStyle user = styleWithPanel("user", Qt::red);
        library.update(user);
        QCOMPARE(library.names(), builtIn + QStringList{"user"});
        library.update(styleWithPanel("USER", Qt::blue));
        QCOMPARE(library.names(), builtIn + QStringList{"USER"});
        QCOMPARE(library.style("user").colour(ZvStyleBrush::Panel).qColour(), QColor(Qt::blue));
        library.update(library.style("user"));
        QCOMPARE(library.names().size(), 3);
    }

    void clear()
    {
        ZvStyleLibrary library;
        library.update(styleWithPanel("user", Qt::red));
        library.clear(false);
        QCOMPARE(library.names(), builtIn);
        library.clear(true);
        QCOMPARE(library.names(), QStringList());
        QCOMPARE(notFound(library, "Light"), "Style not found: Light"s);
        QVERIFY_EXCEPTION_THROWN((void)library.light(), zvutil::ZvException);
        QVERIFY_EXCEPTION_THROWN((void)library.dark(), zvutil::ZvException);
        // The accents stay.
        library.save(libraryPath());
        QCOMPARE(accentsIn(zvtest::contentOf(m_host->libraryFile())).size(), 48);
    }

    void copiesShareNothing()
    {
        ZvStyleLibrary source;
        const ZvStyleLibrary copy(source);
        ZvStyleLibrary assigned = empty();
        QVERIFY(&(assigned = source) == &assigned);
        source.clear(true);
        QCOMPARE(copy.names(), builtIn);
        QCOMPARE(assigned.names(), builtIn);
        QVERIFY(copy.light().isDefaultStyle());
        const ZvStyleLibrary& self = assigned;
        assigned = self;
        QCOMPARE(assigned.names(), builtIn);
    }

    void moves()
    {
        ZvStyleLibrary source;
        const ZvStyle* const place = &source.light();
        ZvStyleLibrary target(std::move(source));
        QVERIFY(&target.light() == place);
        source = std::move(target); // NOLINT(bugprone-use-after-move): that is the test
        QVERIFY(&source.light() == place);
    }

    void loading()
    {
        // Places count, names of elements don't; what is beyond the known places is skipped.
        QVERIFY(m_host->write(
            m_host->libraryFile(),
            "<?xml version=\"1.0\"?><!-- c --><a>\n <b>\n"
            "  <c colour='ignored' name='One'> <!-- c --> text"
            "   <d x='1'>"
            "    <e name='Panel' colour='#010101'><skipped/></e>"
            "    <f colour='#020202' name='TextHover'/>"
            "    <g name='Panel' colour='#03030303'/>"
            "    <h name='panel' colour='#040404'/>"
            "    <i name='Accent' colour='#050505'/>"
            "    <j name='AccentL1' colour='#060606'/>"
            "   </d>"
            "   <k><l name='Menu' path='m'/><m path='n' name='menu'/></k>"
            "   <n>"
            "    <o name='E'><p><q name='X' colour='#070707'/><q name='x' colour='#080808'/></p>"
            "     <skipped/></o>"
            "    <o name='F'/>"
            "   </n>"
            "   <skipped><skipped/></skipped>"
            "  </c>"
            "  <c name='one'><d/><k/></c>"
            " </b>"
            " <r><s name='y' colour='nonsense'/></r>"
            " <skipped/></a>"));
        const ZvStyleLibrary library(libraryPath());
        // Names that repeat in one file are kept.
        QCOMPARE(library.names(), (QStringList{"One", "one"}));
        const ZvStyle& style = library.style("ONE");
        QVERIFY(!style.isDefaultStyle());
        QCOMPARE(brush(style, "Panel"), QColor(3, 3, 3, 3));
        QCOMPARE(brush(style, "TextHover"), QColor(2, 2, 2));
        QCOMPARE(brush(style, "TOTAL"), QColor(6, 6, 6));
        QCOMPARE(brush(style, "Accent"), QColor(0x2D, 0x7D, 0x9A));
        QVERIFY(!brush(style, "EditorFocus").isValid());
        QCOMPARE(iconPath(style, "Menu"), QString("m"));
        QCOMPARE(iconPath(style, "TOTAL"), QString("n"));
        QCOMPARE(style.editorColour("E", "X"), QColor(8, 8, 8));
        QCOMPARE(std::string(style.editorStyle("f").name()), "F"s);
        library.save(libraryPath());
        QCOMPARE(accentsIn(zvtest::contentOf(m_host->libraryFile())), QStringList{"y #000000"});
    }

    void accentIsReadFromTheHost()
    {
        host::writeOption("ZvStyleAccent", "#E81123");
        QVERIFY(m_host->write(m_host->libraryFile(),
                              document(style("A", "<Brush name=\"Accent\" colour=\"#010203\"/>"))));
        const ZvStyleLibrary library(libraryPath());
        QCOMPARE(brush(library.style("A"), "Accent"), QColor(0xE8, 0x11, 0x23));
    }

    void unreadableFiles()
    {
        QCOMPARE(ZvStyleLibrary(libraryPath()).names(), QStringList());
        QVERIFY(m_host->write(m_host->libraryFile(), QByteArray()));
        const ZvFilePath directory(m_host->path().toStdWString());
        QCOMPARE(ZvStyleLibrary(directory).names(), QStringList());
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");
        QCOMPARE(ZvStyleLibrary(ZvFilePath()).names(), QStringList());
    }

    void failedLoads_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("what");
        const auto row = [](const char* name, const QByteArray& bytes, const char* what) {
            QTest::newRow(name) << bytes << utf8(what);
        };
        const char null[] = "null element xml exception";
        row("empty file", "", null);
        row("no XML", "nothing of the kind", null);
        row("declaration alone", "<?xml version=\"1.0\"?>", null);
        row("empty root", "<StyleLibrary/>", null);
        row("style without children", document("<Style name=\"a\"/>"), null);
        row("style without icons", document("<Style name=\"a\"><Brushes/></Style>"), null);
        row("style without a name", document("<Style><Brushes/><Icons/></Style>"), "name");
        row("brush without a colour", document(style("a", "<Brush name=\"Panel\"/>")), "colour");
        row("brush without a name", document(style("a", "<Brush colour=\"#010203\"/>")), "name");
        row("brush without either", document(style("a", "<Brush/>")), "colour");
        row("name in capitals", document("<Style NAME=\"a\"/>"), "name");
        row("icon without a path",
            document("<Style name=\"a\"><Brushes/><Icons><Icon name=\"Menu\"/></Icons></Style>"),
            "path");
        row("icon without a name",
            document("<Style name=\"a\"><Brushes/><Icons><Icon path=\"m\"/></Icons></Style>"),
            "name");
        row("editor without a name",
            document(style("a", "", "<Editors><Editor><Brushes/></Editor></Editors>")), "name");
        row("brush of an editor without a colour",
            document(style("a", "",
                           "<Editors><Editor name=\"e\"><Brushes><Brush name=\"b\"/></Brushes>"
                           "</Editor></Editors>")),
            "colour");
        row("accent without a colour", document("", "<Accent name=\"a\"/>"), "colour");
        row("accent without a name", document("", "<Accent colour=\"#010203\"/>"), "name");
    }

    void filesThatBreakOff_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("what");
        QTest::addColumn<QStringList>("names");
        const QString null = "null element xml exception";
        const QByteArray whole = "<Style name='A'><Brushes/><Icons/></Style>";
        const QStringList one{"A"};
        const auto row = [&](const char* name, const QByteArray& behind, const QString& what,
                             const QStringList& names) {
            QTest::newRow(name) << "<StyleLibrary>" + behind << what << names;
        };
        row("in front of the list of styles", "", null, {});
        row("at the list's start", "<Styles>", QString(), {});
        row("behind a style", "<Styles>" + whole, QString(), one);
        row("in a style's start tag", "<Styles>" + whole + "<Style na", QString(), one);
        row("in front of a style's brushes", "<Styles>" + whole + "<Style name='B'>", null, {});
        row("in a style's brushes",
            "<Styles>" + whole + "<Style name='B'><Brushes><Brush name='Panel' colour='red'/>",
            null, {});
        row("in a style's icons", "<Styles>" + whole + "<Style name='B'><Brushes/><Icons>",
            QString(), one + QStringList{"B"});
        row("behind the styles", "<Styles>" + whole + "</Styles>", QString(), one);
        row("among the accents", "<Styles>" + whole + "</Styles><Accents><A", QString(), one);
        row("malformed behind a style", "<Styles>" + whole + "</Oops>", QString(), one);
    }

    void filesThatBreakOff()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, what);
        QFETCH(QStringList, names);
        QVERIFY(m_host->write(m_host->libraryFile(), bytes));
        QCOMPARE(loadFailure(), what);
        if (what.isEmpty())
            QCOMPARE(ZvStyleLibrary(libraryPath()).names(), names);
    }

    void failedLoads()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, what);
        QVERIFY(m_host->write(m_host->libraryFile(), bytes));
        QCOMPARE(loadFailure(), what);

        // A library that is there stays as it was, and so does the file.
        ZvStyleLibrary library;
        library.update(styleWithPanel("user", Qt::red));
        QVERIFY_EXCEPTION_THROWN(library.add(libraryPath()), xml::xml_exception);
        QCOMPARE(library.names(), builtIn + QStringList{"user"});
        QCOMPARE(zvtest::contentOf(m_host->libraryFile()), bytes);
    }

    void brokenFilesCountUpToTheirEnd()
    {
        QByteArray bytes = document(style("A", "<Brush name=\"Panel\" colour=\"#010101\"/>")
                                    + style("B") + "<Style name=\"C\"><Brushes>");
        QVERIFY(m_host->write(m_host->libraryFile(), document(style("A") + style("B")).left(140)));
        QCOMPARE(ZvStyleLibrary(libraryPath()).names(), (QStringList{"A", "B"}));
        QVERIFY(m_host->write(m_host->libraryFile(),
                              document(style("A")).replace("</Styles>", "</Wrong>")));
        QCOMPARE(ZvStyleLibrary(libraryPath()).names(), QStringList{"A"});
    }

    void everyTruncation()
    {
        ZvStyleLibrary library;
        library.update(styleWithPanel("user", Qt::red));
        library.clear(false);
        library.update(styleWithPanel("user", Qt::red));
        library.save(libraryPath());
        const QByteArray all = zvtest::contentOf(m_host->libraryFile());
        int loaded = 0;
        for (int size = 0; size < all.size(); size += 7) {
            QVERIFY(m_host->write(m_host->libraryFile(), all.left(size)));
            // Whatever it is, it is either loaded or refused.
            loaded += loadFailure().isEmpty() ? 1 : 0;
            if (size % 700 == 0)
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QVERIFY(loaded > 0);
    }

    void saving()
    {
        QVERIFY(m_host->write(
            m_host->libraryFile(),
            document(style("A &amp; B", "<Brush name=\"Panel\" colour=\"#61010203\"/>",
                           "<Editors><Editor name=\"E\"><Brushes><Brush name=\"x\" colour=\"red\"/>"
                           "</Brushes></Editor></Editors>"),
                     "<Accent name=\"Red\" colour=\"#E81123\"/>")));
        const ZvStyleLibrary library(libraryPath());
        library.save(libraryPath());
        const QString text = QString::fromUtf8(zvtest::contentOf(m_host->libraryFile()));
        QVERIFY(text.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                                "<StyleLibrary><Styles><Style name=\"A &amp; B\">"
                                "<Brushes>"
                                "<Brush name=\"Panel\" colour=\"#010203\"/>"));
        QVERIFY(text.contains("<Brush name=\"TOTAL\" colour=\"#000000\"/></Brushes>"
                              "<Icons><Icon name=\"CheckboxTick\" path=\"\"/>"));
        QVERIFY(text.endsWith(
            "<Icon name=\"TOTAL\" path=\"\"/></Icons>"
            "<Editors><Editor name=\"E\"><Brushes><Brush name=\"x\" colour=\"#ff0000\"/></Brushes>"
            "</Editor></Editors></Style></Styles>"
            "<Accents><Accent name=\"Red\" colour=\"#e81123\"/></Accents>"));
        QCOMPARE(text.count(QString("<Brush ")), 28 + 1);
        QCOMPARE(text.count(QString("<Icon ")), 5);
    }

    void savedLibraryLoadsBack()
    {
        ZvStyleLibrary library;
        ZvStyle user = library.dark().duplicate("\xC3\xA4 user");
        user.setColour(ZvStyleBrush::AccentForeground, Qt::red);
        library.update(user);
        library.save(libraryPath());
        host::writeOption("ZvStyleAccent", "#E81123");

        const ZvStyleLibrary back(libraryPath());
        QCOMPARE(back.names(), library.names());
        QVERIFY(!back.light().isDefaultStyle());
        QCOMPARE(brush(back.light(), "TextDisabled"), QColor(0, 0, 0));
        QCOMPARE(brush(back.dark(), "Panel"), QColor(0x20, 0x20, 0x20));
        // Written as black, which is what an invalid colour comes back as.
        QCOMPARE(brush(back.dark(), "TextHover"), QColor(0, 0, 0));
        const ZvStyle& loaded = back.style("\xC3\xA4 user");
        QCOMPARE(brush(loaded, "Accent"), QColor(0xE8, 0x11, 0x23));
        QVERIFY(!brush(loaded, "AccentForeground").isValid());
        QCOMPARE(loaded.editorColour("Testplan", "ErrorText"), QColor(0, 0, 0));
        QCOMPARE(iconPath(loaded, "Close"), QString(":/libzvutil/style/cross-white.svg"));
    }

    void saveThatFailsSaysNothing()
    {
        const ZvStyleLibrary library;
        library.save(ZvFilePath((m_host->path() + "/none/a.xml").toStdWString()));
        QVERIFY(!QFile::exists(m_host->path() + "/none"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void tenThousandStyles()
    {
        QByteArray styles;
        for (int i = 0; i < 10'000; ++i)
            styles += style("Style " + QByteArray::number(i),
                            "<Brush name=\"Panel\" colour=\"#010203\"/>");
        QVERIFY(m_host->write(m_host->libraryFile(), document(styles)));
        ZvStyleLibrary library;
        library.add(libraryPath());
        QCOMPARE(library.names().size(), 10'002);
        QCOMPARE(library.names().last(), QString("Style 9999"));
    }

private:
    ZvFilePath libraryPath() const
    {
        QDir(m_host->path()).mkpath("ui");
        return {m_host->libraryFile().toStdWString()};
    }

    static ZvStyleLibrary empty()
    {
        ZvStyleLibrary library;
        library.clear(true);
        return library;
    }

    /// What the load of the user's library throws; empty if it throws nothing.
    QString loadFailure() const
    {
        try {
            const ZvStyleLibrary library(libraryPath());
        } catch (const xml::attribute_not_found_xml_exception& error) {
            return QString::fromUtf8(error.what());
        } catch (const xml::null_element_xml_exception& error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    std::unique_ptr<zvtest::StyleHost> m_host;
};

QTEST_GUILESS_MAIN(tst_ZvStyleLibrary)
#include "tst_ZvStyleLibrary.moc"
