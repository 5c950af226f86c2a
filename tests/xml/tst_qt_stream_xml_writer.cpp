#include "WrittenXml.h"

#include "support/HeldFiles.h"

#include <QBuffer>
#include <QTest>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using zvtest::declaration;
using zvtest::decoded;
using zvtest::Document;
using zvtest::Element;
using zvtest::units;
using zvtest::utf8;
using zvtest::written;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

class tst_qt_stream_xml_writer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void declarationIsWrittenAtConstruction()
    {
        declarationOf<char>();
        declarationOf<char16_t>();
        declarationOf<char32_t>();
        declarationOf<wchar_t>();
    }

    void bytesHaveTheMachinesOrderAndNoMark()
    {
        const QByteArray narrow = bytesOf<char>();
        const QByteArray wide = bytesOf<wchar_t>();
        const QByteArray wider = bytesOf<char32_t>();
        QVERIFY(narrow.startsWith("<?"));
        QVERIFY(wide.startsWith(QByteArray("<\0?\0", 4)));
        QVERIFY(wider.startsWith(QByteArray("<\0\0\0?\0\0\0", 8)));
        QCOMPARE(bytesOf<char16_t>(), wide);
        QCOMPARE(wide.size(), 2 * (narrow.size() + 1));
        QCOMPARE(wider.size(), 2 * wide.size());
    }

    void nestingIsLifetime()
    {
        const QString text = written<char>([](Document<char>& document) {
            const Element<char> root = document.root_element("r");
            root->attribute("x", "1");
            root->attribute("y", "22", 1);
            {
                const Element<char> a = root->child("a");
                a->child("b")->text("t");
                a->child("c");
            }
            root->text("u");
            root->child("d")->attribute("z", "");
        });
        QCOMPARE(text, utf8("<r x=\"1\" y=\"2\"><a><b>t</b><c/></a>u<d z=\"\"/></r>"));
    }

    void thereIsNoIndentationAtAnyDepth()
    {
        const QString text = written<char>([](Document<char>& document) {
            std::vector<Element<char>> open;
            open.push_back(document.root_element("r"));
            for (int i = 0; i < 20; ++i)
                open.push_back(open.back()->child("a"));
            while (!open.empty())
                open.pop_back();
        });
        QCOMPARE(text,
                 "<r>" + QString::fromUtf8("<a>").repeated(19) + "<a/>"
                     + QString::fromUtf8("</a>").repeated(19) + "</r>");
    }

    void parentsDestroyedFirstStillBalance()
    {
        // The end tag is always that of the innermost open element.
        const QString text = written<char>([](Document<char>& document) {
            Element<char> root = document.root_element("r");
            Element<char> a = root->child("a");
            Element<char> b = a->child("b");
            root.reset();
            a->text("in a");
            a.reset();
            b->text("in r");
        });
        QCOMPARE(text, utf8("<r><a><b/>in a</a>in r</r>"));
    }

    void elementsAreClosedByTheirDocument()
    {
        // The elements outlive the document, and have nothing left to write.
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        auto document = std::make_unique<Document<char>>(&buffer);
        const Element<char> root = document->root_element("r");
        const Element<char> a = root->child("a");
        document.reset();
        const QByteArray whole = buffer.data();
        QVERIFY(whole.endsWith("?><r><a/></r>\n"));
    }

    void siblingByAssignmentLiesWithin()
    {
        const QString text = written<char>([](Document<char>& document) {
            const Element<char> root = document.root_element("r");
            Element<char> child = root->child("a");
            child = root->child("b");
            child->text("t");
        });
        QCOMPARE(text, utf8("<r><a><b/>t</a></r>"));
    }

    void severalRootsAreNotRefused()
    {
        const QString text = written<char>([](Document<char>& document) {
            document.root_element("r");
            document.root_element("s");
        });
        QCOMPARE(text, utf8("<r/><s/>"));
    }

    void nullNameThrowsAndWritesNothing()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        Document<char> document(&buffer);
        const QByteArray before = buffer.data();
        QVERIFY_EXCEPTION_THROWN(document.root_element(nullptr), std::logic_error);
        QCOMPARE(buffer.data(), before);
    }

    void cancelOfAPlainDocumentDoesNothing()
    {
        const QString text = written<char>([](Document<char>& document) {
            document.cancel_writing();
            document.root_element("r");
            document.cancel_writing();
        });
        QCOMPARE(text, utf8("<r/>"));
    }

private:
    template <typename C>
    static void declarationOf()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const Document<C> document(&buffer);
        QCOMPARE(decoded<C>(buffer.data()), declaration<C>());
    }

    template <typename C>
    static QByteArray bytesOf()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        {
            Document<C> document(&buffer);
            document.root_element(units<C>("root").c_str())->text(units<C>("text").c_str());
        }
        return buffer.data();
    }
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_writer)
#include "tst_qt_stream_xml_writer.moc"
