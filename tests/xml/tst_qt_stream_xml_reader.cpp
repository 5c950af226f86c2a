#include "impl/text/qt_text.h"
#include "impl/xml/qt_stream_xml_document_reader.h"
#include "impl/xml/qt_stream_xml_element_reader.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include "support/SmallStack.h"
#include "support/StdString.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QTest>
#include <QTextCodec>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace zvutil::experimental::xml;
using namespace std::string_literals;

namespace {

using Element = zvutil::experimental::unique_destroyable_ptr<abstract_xml_element_reader>;

class Document : public qt_stream_xml_document_reader
{
public:
    explicit Document(const QByteArray& bytes)
        : Document(std::make_unique<QBuffer>(), bytes)
    {
    }

private:
    Document(std::unique_ptr<QBuffer>&& buffer, const QByteArray& bytes)
        : qt_stream_xml_document_reader(buffer.get())
        , m_buffer(std::move(buffer))
    {
        m_buffer->setData(bytes);
        m_buffer->open(QIODevice::ReadOnly);
    }

    std::unique_ptr<QBuffer> m_buffer;
};

/// The names of an element and of all elements below: `a(b()c())`.
std::string structure(const Element& element)
{
    std::string result = element->name();
    result += '(';
    while (const Element child = element->next_child())
        result += structure(child);
    return result + ')';
}

std::string structure(const QByteArray& document)
{
    Document reader(document);
    const Element root = reader.root_element();
    return root ? structure(root) : "none";
}

std::string nameOf(const Element& element)
{
    return element ? element->name() : "none";
}

std::optional<std::string> attributeOf(const Element& element, const char* name)
{
    try {
        return element->attribute(name);
    } catch (const attribute_not_found_xml_exception&) {
        return std::nullopt;
    }
}

/// Whether nothing more can be read, while all that has been read is still there.
bool isNull(const Element& element, const std::string& name, const std::string& x)
{
    try {
        element->text();
        return false;
    } catch (const null_element_xml_exception&) {
    }
    try {
        element->next_child();
        return false;
    } catch (const null_element_xml_exception&) {
    }
    return element->name() == name && element->attribute("x") == x;
}

enum class Mark { None, ByteOrder };

QByteArray encoded(const char* codec, const QString& text, Mark mark)
{
    QTextCodec::ConverterState state(mark == Mark::None ? QTextCodec::IgnoreHeader
                                                        : QTextCodec::DefaultConversion);
    return QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

constexpr char twoLevels[] = "<r x='0'><a x='1'><b x='2'/><c/></a><d x='3'>t</d><e/></r>";

} // namespace

class tst_qt_stream_xml_reader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsATree() { QCOMPARE(structure(twoLevels), "r(a(b()c())d()e())"s); }

    void readsTextAndAttributes()
    {
        Document document("<r one='1' two=' 2 ' none=''><a>text</a><b/></r>");
        const Element root = document.root_element();
        QCOMPARE(root->name(), "r");
        QCOMPARE(root->attribute("two"), " 2 ");
        QCOMPARE(root->attribute("one"), "1");
        QCOMPARE(root->attribute("none"), "");
        QCOMPARE(root->next_child()->text(), "text");
        QCOMPARE(root->next_child()->text(), "");
        QVERIFY(!root->next_child());
    }

    void secondRootIsNullWhileTheFirstIsHeld()
    {
        Document document("<r><a/></r>");
        const Element root = document.root_element();
        QVERIFY(root);
        QVERIFY(!document.root_element());
        QCOMPARE(structure(root), "r(a())"s);
    }

    void secondRootIsNullAfterTheFirst()
    {
        Document document("<r><a/></r>");
        document.root_element();
        QVERIFY(!document.root_element());
        QVERIFY(!document.root_element());
    }

    void rootIsFoundBehindTheStart()
    {
        QCOMPARE(structure("<?xml version='1.0'?>\n<!-- c --><!DOCTYPE r><?pi?>\n<r/>"), "r()"s);
    }

    void rootIsNullOnceAnElementHasBeenRead()
    {
        Document document("<r><a/></r>");
        document.next_element();
        QVERIFY(!document.root_element());
    }

    void rootAsksTheVirtualNextElement()
    {
        class Counting : public Document
        {
        public:
            using Document::Document;
            Element next_element() override
            {
                ++calls;
                return Document::next_element();
            }
            int calls = 0;
        };
        Counting document("<r/>");
        QVERIFY(document.root_element());
        QCOMPARE(document.calls, 1);
        QVERIFY(!document.root_element());
        QCOMPARE(document.calls, 1);
    }

    void nextElementGoesToTheNextStartTagAtAnyDepth()
    {
        Document document("<r><a><b/></a>text<c/></r>");
        std::vector<Element> elements;
        std::string names;
        while (Element element = document.next_element()) {
            names += element->name();
            elements.push_back(std::move(element));
        }
        QCOMPARE(names, "rabc"s);
        QVERIFY(!document.next_element());
    }

    void nextElementAfterAnElementThatWasLetGo()
    {
        // Letting go skips the element with all that is in it.
        Document document("<r><a><b/></a><c/></r>");
        const Element root = document.next_element();
        QCOMPARE(nameOf(document.next_element()), "a"s);
        QCOMPARE(nameOf(document.next_element()), "c"s);
        QVERIFY(!document.next_element());
    }

    void elementsFromNextElementReadOnWithoutHarm()
    {
        // They stand elsewhere than they know, up to behind the end of the document.
        Document document("<r><a><b/></a><c/></r>");
        Element root = document.next_element();
        Element a = document.next_element();
        Element b = document.next_element();
        QVERIFY(!b->next_child());
        QCOMPARE(nameOf(document.next_element()), "c"s);
        QVERIFY(!root->next_child());
        QVERIFY(!document.next_element());
        QVERIFY(!a->next_child());
    }

    void elementsOutliveTheirDocumentReader()
    {
        QBuffer buffer;
        buffer.setData("<r><a/><b/></r>");
        buffer.open(QIODevice::ReadOnly);
        auto document = std::make_unique<qt_stream_xml_document_reader>(&buffer);
        const Element root = document->root_element();
        document.reset();
        QCOMPARE(structure(root), "r(a()b())"s);
    }

    void nextChildReturnsNullOnceAndThenThrows()
    {
        Document document("<r x='1'><a/></r>");
        const Element root = document.root_element();
        QVERIFY(root->next_child());
        QVERIFY(!root->next_child());
        QVERIFY_EXCEPTION_THROWN(root->next_child(), null_element_xml_exception);
        QVERIFY(isNull(root, "r", "1"));
    }

    void textWorksOnce()
    {
        Document document("<r x='1'>text</r>");
        const Element root = document.root_element();
        const char* const text = root->text();
        QCOMPARE(text, "text");
        QVERIFY(isNull(root, "r", "1"));
        QCOMPARE(text, "text");
    }

    void nextChildAfterTextThrows()
    {
        Document document("<r x='1'>text</r>");
        const Element root = document.root_element();
        root->text();
        QVERIFY_EXCEPTION_THROWN(root->next_child(), null_element_xml_exception);
    }

    void textsStayValid()
    {
        Document document(twoLevels);
        const Element root = document.root_element();
        const Element a = root->next_child();
        const char* const name = a->name();
        const char* const value = a->attribute("x");
        while (root->next_child()) { }
        QCOMPARE(name, "a");
        QCOMPARE(value, "1");
        QCOMPARE(a->name(), name);
    }

    void attributes_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QByteArray>("value");
        const auto row = [](const char* title, const char* document, const char* name,
                            const char* value) {
            QTest::newRow(title) << QByteArray(document) << QByteArray(name) << (value != nullptr)
                                 << QByteArray(value);
        };
        constexpr char two[] = "<r xmlns:a='A' xmlns:b='B' a:x='1' y='2' b:x='3'/>";
        constexpr char three[] = "<r xmlns:a='A' xmlns:b='B' x='0' a:x='1' b:x='2'/>";
        constexpr char back[] = "<r xmlns:a='A' a:x='1' x='0'/>";
        row("found", "<r name='1'/>", "name", "1");
        row("not found", "<r name='1'/>", "other", nullptr);
        row("no attributes at all", "<r/>", "x", nullptr);
        row("empty name", "<r name='1'/>", "", nullptr);
        row("case counts", "<r name='1'/>", "Name", nullptr);
        row("prefix of a name", "<r name='1'/>", "nam", nullptr);
        row("name is a prefix", "<r nam='1'/>", "name", nullptr);
        row("bytes of UTF-8", "<r n\xC3\xA4me='\xC3\xB6'/>", "n\xC3\xA4me", "\xC3\xB6");
        row("above U+FFFF", "<r x='\xF0\x9D\x84\x9E'/>", "x", "\xF0\x9D\x84\x9E");
        row("plain and then not", "<r x='plain \xE2\x82\xAC end'/>", "x", "plain \xE2\x82\xAC end");
        row("long", "<r x='0123456789012345678901234567890123456789'/>", "x",
            "0123456789012345678901234567890123456789");
        row("references", "<r x='&lt;&amp;&#65;&#x1F600;'/>", "x", "<&A\xF0\x9F\x98\x80");
        row("white space is normalised", "<r x='a\n\tb'/>", "x", "a  b");
        row("namespace prefix", "<r xmlns:a='A' a:x='1'/>", "x", "1");
        row("the whole name isn't it", "<r xmlns:a='A' a:x='1'/>", "a:x", nullptr);
        row("xml: prefix", "<r xml:lang='en'/>", "lang", "en");
        row("namespace declarations are none", "<r xmlns:a='A' xmlns='B'/>", "a", nullptr);
        row("same local name, last wins", two, "x", "3");
        row("other name between", two, "y", "2");
        row("same local name three times", three, "x", "2");
        row("same local name, prefix first", back, "x", "0");
    }

    void attributes()
    {
        QFETCH(QByteArray, document);
        QFETCH(QByteArray, name);
        QFETCH(bool, found);
        QFETCH(QByteArray, value);
        Document reader(document);
        const Element root = reader.root_element();
        const auto actual = attributeOf(root, name.constData());
        QCOMPARE(actual.has_value(), found);
        QCOMPARE(QByteArray::fromStdString(actual.value_or("")), value);
        // The same on a reader that is null.
        while (root->next_child()) { }
        QCOMPARE(attributeOf(root, name.constData()), actual);
    }

    void missingAttributeTellsItsName()
    {
        Document document("<r/>");
        const Element root = document.root_element();
        try {
            root->attribute("n\xC3\xA4me");
            QFAIL("nothing was thrown");
        } catch (const attribute_not_found_xml_exception& error) {
            QCOMPARE(error.what(), "n\xC3\xA4me");
        }
    }

    void texts_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("none") << QByteArray("<r/>") << QByteArray();
        QTest::newRow("white space") << QByteArray("<r> \n\t</r>") << QByteArray(" \n\t");
        QTest::newRow("line breaks become one")
            << QByteArray("<r>a\r\nb\rc</r>") << QByteArray("a\nb\nc");
        QTest::newRow("character data")
            << QByteArray("<r>a<![CDATA[<&>]]>b</r>") << QByteArray("a<&>b");
        QTest::newRow("comment and instruction")
            << QByteArray("<r>a<!-- no -->b<?no?>c</r>") << QByteArray("abc");
        QTest::newRow("references")
            << QByteArray("<r>&lt;&#228;&quot;</r>") << QByteArray("<\xC3\xA4\"");
        QTest::newRow("entity of its own")
            << QByteArray("<!DOCTYPE r [<!ENTITY e 'v'>]><r>&e;-&e;</r>") << QByteArray("v-v");
        QTest::newRow("entity with entities")
            << QByteArray("<!DOCTYPE r [<!ENTITY a 'x'><!ENTITY e '&a;&a;'>]><r>&e;</r>")
            << QByteArray("xx");
        QTest::newRow("above U+FFFF")
            << QByteArray("<r>\xF0\x9D\x84\x9E</r>") << QByteArray("\xF0\x9D\x84\x9E");
    }

    void texts()
    {
        QFETCH(QByteArray, document);
        QFETCH(QByteArray, text);
        Document reader(document);
        QCOMPARE(QByteArray(reader.root_element()->text()), text);
    }

    void textOfAnElementWithChildrenEndsTheDocument()
    {
        Document document("<r x='1'><a x='2'>before<b/>after</a><c/></r>");
        const Element root = document.root_element();
        const Element a = root->next_child();
        QCOMPARE(a->text(), "before");
        QVERIFY(isNull(a, "a", "2"));
        QVERIFY(!root->next_child());
        QVERIFY(isNull(root, "r", "1"));
        QVERIFY(!document.next_element());
    }

    void textAfterAChildIsEmptyAndReadsNothing_data()
    {
        QTest::addColumn<bool>("held");
        QTest::newRow("child is held") << true;
        QTest::newRow("child has been let go") << false;
    }

    void textAfterAChildIsEmptyAndReadsNothing()
    {
        QFETCH(bool, held);
        Document document("<r><a x='1'>t<b x='2'/>u<c/><d/></a><e/></r>");
        const Element root = document.root_element();
        const Element a = root->next_child();
        Element b = a->next_child();
        if (!held)
            b.reset();
        QCOMPARE(a->text(), "");
        QVERIFY(isNull(a, "a", "1"));
        if (held)
            QVERIFY(isNull(b, "b", "2"));
        // The remaining children of a are now those of its parent, and its end tag is the parent's.
        QCOMPARE(nameOf(root->next_child()), "c"s);
        QCOMPARE(nameOf(root->next_child()), "d"s);
        QVERIFY(!root->next_child());
        QCOMPARE(nameOf(document.next_element()), "e"s);
    }

    void heldChildBecomesNullThroughItsParent()
    {
        Document document(twoLevels);
        const Element root = document.root_element();
        const Element a = root->next_child();
        const Element b = a->next_child();
        const Element d = root->next_child();
        QCOMPARE(nameOf(d), "d"s);
        QVERIFY(isNull(a, "a", "1"));
        QVERIFY(isNull(b, "b", "2"));
        QCOMPARE(d->text(), "t");
        QCOMPARE(nameOf(root->next_child()), "e"s);
    }

    void heldChildBecomesNullThroughItsParentsText()
    {
        Document document(twoLevels);
        const Element root = document.root_element();
        const Element a = root->next_child();
        QCOMPARE(root->text(), "");
        QVERIFY(isNull(a, "a", "1"));
    }

    void heldChildrenOfOneLevel()
    {
        Document document("<r><a x='1'><i/></a><b x='2'><j/></b><c x='3'><k/></c></r>");
        const Element root = document.root_element();
        const Element a = root->next_child();
        const Element b = root->next_child();
        const Element c = root->next_child();
        QVERIFY(isNull(a, "a", "1"));
        QVERIFY(isNull(b, "b", "2"));
        QCOMPARE(nameOf(c->next_child()), "k"s);
        QVERIFY(!root->next_child());
        QVERIFY(isNull(c, "c", "3"));
    }

    void childBelowANullChildIsLeftAlone()
    {
        // A child that was let go lies between: what it handed out can be read on, wherever it is.
        Document document("<r><a><b><c/></b></a><d/></r>");
        const Element root = document.root_element();
        Element a = root->next_child();
        const Element b = a->next_child();
        a.reset();
        QVERIFY_EXCEPTION_THROWN(b->next_child(), null_element_xml_exception);
        QCOMPARE(nameOf(root->next_child()), "d"s);
    }

    void abandonedAtAnyDepth_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("innermostFirst");
        for (int depth = 1; depth <= 4; ++depth) {
            QTest::addRow("%d deep, innermost first", depth) << depth << true;
            QTest::addRow("%d deep, outermost first", depth) << depth << false;
        }
    }

    void abandonedAtAnyDepth()
    {
        QFETCH(int, depth);
        QFETCH(bool, innermostFirst);
        Document document("<r><a><skip/><b><c><d>t</d><x/></c><x/></b><x/></a><next/></r>");
        const Element root = document.root_element();
        std::vector<Element> held;
        held.push_back(root->next_child());
        if (depth > 1)
            QCOMPARE(nameOf(held.back()->next_child()), "skip"s);
        while (held.size() < static_cast<std::size_t>(depth))
            held.push_back(held.back()->next_child());
        while (!held.empty())
            held.erase(innermostFirst ? held.end() - 1 : held.begin());
        QCOMPARE(nameOf(root->next_child()), "next"s);
        QVERIFY(!root->next_child());
    }

    void abandonedByAnException()
    {
        Document document(twoLevels);
        const Element root = document.root_element();
        try {
            const Element a = root->next_child();
            const Element b = a->next_child();
            b->attribute("none");
            QFAIL("nothing was thrown");
        } catch (const xml_exception&) {
        }
        QCOMPARE(nameOf(root->next_child()), "d"s);
    }

    void brokenDocuments_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<std::string>("expected");
        const auto row = [](const char* name, const QByteArray& document, const char* expected) {
            QTest::newRow(name) << document << std::string(expected);
        };
        row("empty", "", "none");
        row("white space", " \n", "none");
        row("byte order mark alone", "\xEF\xBB\xBF", "none");
        row("declaration alone", "<?xml version='1.0'?>", "none");
        row("comment alone", "<!-- -->", "none");
        row("no XML", "name=value", "none");
        row("NULs", QByteArray(100, '\0'), "none");
        row("one byte", "<", "none");
        row("unfinished start tag", "<r x='1'", "none");
        row("unfinished value", "<r x='", "none");
        row("attribute twice", "<r x='1' x='2'/>", "none");
        row("undeclared prefix", "<p:r/>", "none");
        row("nothing behind the root's start tag", "<r>", "none");
        row("root isn't closed, with text", "<r>text", "r()");
        row("child isn't closed", "<r><a>", "r(a())");
        row("error in the third child", "<r><a/><b/><c <d/></r>", "r(a()b())");
        row("error within the third child", "<r><a/><b/><c><d/>&none;</c><e/></r>",
            "r(a()b()c(d()))");
        row("tags cross", "<r><a><b></a></b></r>", "r(a(b()))");
        row("end tag too many", "<r><a/></r></r>", "r(a())");
        row("second root", "<r/><s/>", "r()");
        row("text behind the root", "<r/>text", "r()");
        row("unknown entity", "<r><a/>&none;<b/></r>", "r(a())");
        row("control character", "<r><a/>\x01<b/></r>", "r(a())");
        row("forbidden reference", "<r><a/>&#0;<b/></r>", "r(a())");
        row("reference to a surrogate", "<r><a/>&#xD800;<b/></r>", "r(a())");
        row("bad UTF-8", "<r><a/>\xFF\xFE<b/></r>", "none");
        row("bad UTF-8 behind what is read at once",
            "<r><a/>" + QByteArray(20'000, ' ') + "\xFF\xFE<b/></r>", "r(a())");
        row("unknown encoding", "<?xml version='1.0' encoding='none'?><r/>", "none");
        row("UTF-8 that says it is UTF-16", "<?xml version='1.0' encoding='UTF-16'?><r/>", "none");
        row("version 2", "<?xml version='2.0'?><r/>", "none");
        row("entity that holds itself", "<!DOCTYPE r [<!ENTITY e '&e;'>]><r><a/>&e;<b/></r>",
            "r(a())");
        row("file from outside",
            "<!DOCTYPE r [<!ENTITY e SYSTEM '/etc/passwd'>]><r><a/>&e;<b/></r>", "r(a()b())");
    }

    void brokenDocuments()
    {
        QFETCH(QByteArray, document);
        QFETCH(std::string, expected);
        QCOMPARE(structure(document), expected);
    }

    void textBeforeAnError()
    {
        Document document("<r>before&none;after</r>");
        const Element root = document.root_element();
        QCOMPARE(root->text(), "before");
        Document unfinished("<r>delivered<!-- -->not delivered");
        QCOMPARE(unfinished.root_element()->text(), "delivered");
    }

    void entityFromOutsideIsNotRead()
    {
        Document document("<!DOCTYPE r [<!ENTITY e SYSTEM '/etc/passwd'>]><r>a&e;b</r>");
        QCOMPARE(document.root_element()->text(), "ab");
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QString text =
            QString::fromUtf8("<r n\xC3\xA4me='\xE2\x82\xAC'>\xF0\x9D\x84\x9E</r>");
        const auto declared = [&text](const char* encoding) {
            return QString::fromUtf8("<?xml version='1.0' encoding='%1'?>")
                       .arg(QString::fromUtf8(encoding))
                + text;
        };
        QTest::newRow("UTF-8, nothing said") << text.toUtf8();
        QTest::newRow("UTF-8, declared") << declared("UTF-8").toUtf8();
        QTest::newRow("UTF-8, byte order mark") << QByteArray("\xEF\xBB\xBF") + text.toUtf8();
        QTest::newRow("UTF-16, byte order mark") << encoded("UTF-16", text, Mark::ByteOrder);
        QTest::newRow("UTF-16BE, byte order mark") << encoded("UTF-16BE", text, Mark::ByteOrder);
        QTest::newRow("UTF-16LE, no mark") << encoded("UTF-16LE", declared("UTF-16"), Mark::None);
        // Qt's encoder fails on the character above U+FFFF.
        const QString treble = QString::fromUtf8("\xF0\x9D\x84\x9E");
        const QString reference = QString::fromUtf8("&#x1D11E;");
        QTest::newRow("UTF-32LE, no mark")
            << encoded("UTF-32LE", declared("UTF-32").replace(treble, reference), Mark::None);
        QTest::newRow("ISO-8859-15") << encoded(
            "ISO-8859-15", declared("ISO-8859-15").replace(treble, reference), Mark::None);
    }

    void encodings()
    {
        QFETCH(QByteArray, document);
        Document reader(document);
        const Element root = reader.root_element();
        QVERIFY(root);
        QCOMPARE(root->attribute("n\xC3\xA4me"), "\xE2\x82\xAC");
        QCOMPARE(root->text(), "\xF0\x9D\x84\x9E");
    }

    void unpairedSurrogatesBecomeWhatQtMakesOfThem()
    {
        const QString text =
            QLatin1Char('a') + QString(QChar(0xD800)) + QLatin1Char('b') + QChar(0xDC00);
        Document document(encoded("UTF-16", QLatin1String("<r>") + text + QLatin1String("</r>"),
                                  Mark::ByteOrder));
        QCOMPARE(std::string(document.root_element()->text()), text.toStdString());
    }

    void utf8TextIsToStdString_data()
    {
        QTest::addColumn<QString>("text");
        const ushort lone[] = {'a', 0xD834, 'b', 0xDD1E, 0xDD1E, 0xD834};
        const QString pair = QString::fromUtf8("\xF0\x9D\x84\x9E");
        const QString longText = QString::fromUtf8("0123456789abcdef").repeated(5);
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QString::fromUtf8("");
        QTest::newRow("plain") << QString::fromUtf8("plain");
        QTest::newRow("long") << longText;
        QTest::newRow("NUL within") << QString(QLatin1String("a\0b", 3));
        QTest::newRow("two bytes") << QString::fromUtf8("a\xC3\xA4\xC3\xB6z");
        QTest::newRow("0x7F and 0x80") << QString::fromUtf8("\x7F\xC2\x80\x7F");
        QTest::newRow("three bytes") << QString::fromUtf8("\xE2\x82\xAC");
        QTest::newRow("pair") << pair;
        QTest::newRow("pair behind a long text") << longText + pair + longText;
        QTest::newRow("unpaired") << QString::fromUtf16(lone, 6);
        QTest::newRow("byte order mark") << QString(QChar(QChar::ByteOrderMark)) + pair;
        QTest::newRow("U+FFFF") << QString(QChar(0xFFFF));
    }

    void utf8TextIsToStdString()
    {
        QFETCH(QString, text);
        QCOMPARE(zvutil::impl::utf8_text(QStringRef(&text)), text.toStdString());
        const QString longer = QLatin1Char('x') + text + QLatin1Char('y');
        QCOMPARE(zvutil::impl::utf8_text(longer.midRef(1, text.size())), text.toStdString());
    }

    void closedDeviceHasNoRootAndQtIsSilent()
    {
        bool nothing = false;
        const QStringList warnings = zvtest::warningsOf([&nothing] {
            QBuffer buffer;
            qt_stream_xml_document_reader document(&buffer);
            nothing =
                !document.root_element() && !document.next_element() && !document.root_element();
        });
        QVERIFY(nothing);
        QCOMPARE(warnings, QStringList());
    }

    void noDeviceHasNoRoot()
    {
        qt_stream_xml_document_reader document(nullptr);
        QVERIFY(!document.root_element());
    }

    void noStreamThrows()
    {
        try {
            const qt_stream_xml_element_reader reader(nullptr);
            QFAIL("nothing was thrown");
        } catch (const xml_exception& error) {
            QCOMPARE(error.what(), "not at element start");
        }
    }

    void tokenUnderTheStreamIsNotExamined()
    {
        const auto stream = std::make_shared<QXmlStreamReader>(QByteArray("<r><a/></r>"));
        qt_stream_xml_element_reader reader(stream);
        QCOMPARE(reader.name(), "");
        QCOMPARE(nameOf(reader.next_child()), "r"s);
    }

    void elementSharesItsStream()
    {
        const auto stream = std::make_shared<QXmlStreamReader>(QByteArray("<r><a/></r>"));
        stream->readNextStartElement();
        {
            const qt_stream_xml_element_reader reader(stream);
            QCOMPARE(stream.use_count(), 2L);
        }
        QCOMPARE(stream.use_count(), 1L);
        QCOMPARE(stream->tokenType(), QXmlStreamReader::EndElement);
        QCOMPARE(stream->name().toString(), QStringLiteral("r"));
    }

    void truncatedAtEveryByte_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QString text = QString::fromUtf8(
            "<?xml version='1.0' encoding='%1'?><!DOCTYPE r [<!ENTITY e 'v\xC3\xA4'>]>"
            "<r a='&lt;\xC3\xA4'><b>t&e;</b><!-- c --><p:c xmlns:p='u' p:x='1'><![CDATA[<]]></p:c>"
            "<?pi x?><d><e><f/></e></d>\xE2\x82\xAC</r>\n");
        for (const char* const encoding : {"UTF-8", "UTF-16", "UTF-32"})
            QTest::newRow(encoding)
                << encoded(encoding, text.arg(QString::fromUtf8(encoding)), Mark::None);
    }

    void truncatedAtEveryByte()
    {
        QFETCH(QByteArray, document);
        const std::string whole = "r(b()c()d(e(f())))";
        QCOMPARE(structure(document), whole);
        std::size_t most = 0;
        for (int size = 0; size < document.size(); ++size) {
            std::string part = structure(document.left(size));
            // What there is is the beginning of the whole, in the same order.
            if (part == "none")
                continue;
            part.erase(part.find_last_not_of(')') + 1);
            QVERIFY2(whole.compare(0, part.size(), part) == 0, part.c_str());
            QVERIFY(part.size() >= most);
            most = part.size();
        }
        QCOMPARE(most, whole.find_last_of('(') + 1);
    }

    void deepDocumentIsAbandoned_data()
    {
        QTest::addColumn<bool>("complete");
        QTest::newRow("well formed") << true;
        QTest::newRow("breaks off") << false;
    }

    void deepDocumentIsAbandoned()
    {
        QFETCH(bool, complete);
        constexpr int depth = 1'000'000;
        const QByteArray deep = nested(depth);
        const QByteArray bytes =
            complete ? "<r>" + deep + "<next/></r>" : "<r>" + deep.left(3 * depth);
        std::string next;
        zvtest::onSmallStack([&] {
            Document document(bytes);
            const Element root = document.root_element();
            root->next_child();
            next = nameOf(root->next_child());
        });
        QCOMPARE(next, complete ? "next"s : "none"s);
    }

    void deepDocumentIsAbandonedFromWithin()
    {
        const QByteArray bytes = "<r>" + nested(200'000) + "<next/></r>";
        std::string next;
        zvtest::onSmallStack([&] {
            Document document(bytes);
            const Element root = document.root_element();
            std::vector<Element> chain;
            chain.push_back(root->next_child());
            while (chain.size() < 1000)
                chain.push_back(chain.back()->next_child());
            chain.clear();
            next = nameOf(root->next_child());
        });
        QCOMPARE(next, "next"s);
    }

    void longChainOfHeldChildrenIsFinished()
    {
        constexpr int depth = 200'000;
        const QByteArray bytes = "<r>" + nested(depth) + "<next/></r>";
        std::string next;
        std::size_t live = 0;
        zvtest::onSmallStack([&] {
            Document document(bytes);
            const Element root = document.root_element();
            std::vector<Element> chain;
            chain.push_back(root->next_child());
            while (chain.size() < depth)
                chain.push_back(chain.back()->next_child());
            next = nameOf(root->next_child());
            for (const Element& element : chain) {
                try {
                    element->next_child();
                    ++live;
                } catch (const null_element_xml_exception&) {
                }
            }
        });
        QCOMPARE(next, "next"s);
        QCOMPARE(live, std::size_t(0));
    }

    void wideDocument()
    {
        constexpr int width = 300'000;
        Document document("<r>" + QByteArray("<a/>").repeated(width) + "</r>");
        const Element root = document.root_element();
        int count = 0;
        while (root->next_child())
            ++count;
        QCOMPARE(count, width);
    }

    void manyAttributes()
    {
        // Qt compares each with each, so it can't be a million.
        constexpr int count = 5000;
        QByteArray bytes = "<r xmlns:p='u'";
        for (int i = 0; i < count; ++i)
            bytes += " p:a" + QByteArray::number(i) + "='" + QByteArray::number(i) + "'";
        Document document(bytes + "/>");
        const Element root = document.root_element();
        QVERIFY(root);
        QCOMPARE(root->attribute("a0"), "0");
        QCOMPARE(root->attribute("a4999"), "4999");
        QVERIFY(!attributeOf(root, "a5000"));
    }

    void longTexts()
    {
        const QByteArray value(10'000'000, 'v');
        Document document("<r x='" + value + "'>" + value + "</r>");
        const Element root = document.root_element();
        QCOMPARE(QByteArray(root->attribute("x")), value);
        QCOMPARE(QByteArray(root->text()), value);
    }

    void entityBombs_data()
    {
        QTest::addColumn<QByteArray>("document");
        QByteArray doubling = "<!DOCTYPE r [<!ENTITY e0 'bomb'>";
        for (int i = 1; i <= 64; ++i) {
            const QByteArray before = "&e" + QByteArray::number(i - 1) + ";";
            doubling += "<!ENTITY e" + QByteArray::number(i) + " '" + before + before + "'>";
        }
        QTest::newRow("doubling") << doubling + "]><r><a/>&e64;<b/></r>";
        QTest::newRow("doubling in an attribute") << doubling + "]><r><a/><b x='&e64;'/></r>";
        QTest::newRow("one large entity many times") << "<!DOCTYPE r [<!ENTITY e '"
                + QByteArray(100'000, 'x') + "'>]><r><a/>" + QByteArray("&e;").repeated(100'000)
                + "<b/></r>";
        QTest::newRow("circle") << QByteArray(
            "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r><a/>&a;<b/></r>");
    }

    void entityBombs()
    {
        QFETCH(QByteArray, document);
        Document reader(document);
        const Element root = reader.root_element();
        QVERIFY(root);
        QCOMPARE(nameOf(root->next_child()), "a"s);
        QVERIFY(!root->next_child());
    }
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_reader)
#include "tst_qt_stream_xml_reader.moc"
