// Documents that break off, that are wrong, or that are very large.

#include "ReaderDocument.h"

#include "impl/xml/qt_stream_xml_document_reader.h"
#include "impl/xml/qt_stream_xml_element_reader.h"

#include <zvutil/experimental/xml/null_element_xml_exception.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include "support/SmallStack.h"
#include "support/StdString.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QTest>

#include <string>
#include <vector>

using zvtest::attributeOf;
using zvtest::Document;
using zvtest::Element;
using zvtest::encoded;
using zvtest::Mark;
using zvtest::nameOf;
using zvtest::structure;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

namespace {

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

class tst_qt_stream_xml_reader_broken : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

QTEST_GUILESS_MAIN(tst_qt_stream_xml_reader_broken)
#include "tst_qt_stream_xml_reader_broken.moc"
