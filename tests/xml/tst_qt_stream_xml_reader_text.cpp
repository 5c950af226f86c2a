// Texts and attributes that are read from XML.

#include "ReaderDocument.h"

#include "impl/text/qt_text.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include "support/StdString.h"

#include <QTest>

#include <string>

using zvtest::attributeOf;
using zvtest::Document;
using zvtest::Element;
using zvtest::encoded;
using zvtest::isNull;
using zvtest::Mark;
using zvtest::nameOf;
using zvtest::twoLevels;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

class tst_qt_stream_xml_reader_text : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

    void heldChildBecomesNullThroughItsParentsText()
    {
        Document document(twoLevels);
        const Element root = document.root_element();
        const Element a = root->next_child();
        QCOMPARE(root->text(), "");
        QVERIFY(isNull(a, "a", "1"));
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
        Document document(encoded("UTF-16", "<r>" + text + "</r>", Mark::ByteOrder));
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
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_reader_text)
#include "tst_qt_stream_xml_reader_text.moc"
