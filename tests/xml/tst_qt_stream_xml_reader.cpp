#include "ReaderDocument.h"

#include "impl/xml/qt_stream_xml_document_reader.h"
#include "impl/xml/qt_stream_xml_element_reader.h"

#include <zvutil/experimental/xml/null_element_xml_exception.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include "support/StdString.h"

#include <QBuffer>
#include <QTest>

#include <memory>
#include <string>
#include <utility>
#include <vector>

using zvtest::Document;
using zvtest::Element;
using zvtest::isNull;
using zvtest::nameOf;
using zvtest::structure;
using zvtest::twoLevels;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

class tst_qt_stream_xml_reader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsATree() { QCOMPARE(structure(twoLevels), "r(a(b()c())d()e())"s); }

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
        QCOMPARE(stream->name().toString(), QString("r"));
    }
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_reader)
#include "tst_qt_stream_xml_reader.moc"
