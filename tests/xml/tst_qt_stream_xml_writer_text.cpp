// Names, texts and attributes that are written as XML.

#include "WrittenXml.h"

#include "impl/xml/basic_qt_stream_xml_element_writer.h"
#include "impl/xml/qt_stream_xml_document_reader.h"

#include "support/HeldFiles.h"
#include "support/StdString.h"

#include <QBuffer>
#include <QTest>

#include <functional>
#include <memory>
#include <string>

using zvtest::Document;
using zvtest::Element;
using zvtest::units;
using zvtest::utf8;
using zvtest::written;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

namespace {

/// What an attribute `a` of the root `r` makes of the value.
template <typename C, typename Write>
QString valueWritten(Write write)
{
    const QString text = written<C>([&write](Document<C>& document) {
        const Element<C> root = document.root_element(units<C>("r").c_str());
        write(*root);
    });
    const QString before = QString::fromUtf8("<r a=\"");
    const QString after = QString::fromUtf8("\"/>");
    if (!text.startsWith(before) || !text.endsWith(after))
        return "wrong frame: " + text;
    return text.mid(before.size(), text.size() - before.size() - after.size());
}

template <typename C>
QString byNul(const C* value)
{
    return valueWritten<C>([value](auto& root) { root.attribute(units<C>("a").c_str(), value); });
}

template <typename C>
QString byLength(const C* value, int length)
{
    return valueWritten<C>(
        [=](auto& root) { root.attribute(units<C>("a").c_str(), value, length); });
}

} // namespace

Q_DECLARE_METATYPE(std::function<QString()>)

class tst_qt_stream_xml_writer_text : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data()
    {
        QTest::addColumn<std::function<QString()>>("write");
        QTest::addColumn<QString>("expected");
        using Write = std::function<QString()>;
        const auto row = [](const char* name, const Write& write, const QString& expected) {
            QTest::newRow(name) << write << expected;
        };
        const QString clef = utf8("\xF0\x9D\x84\x9E");
        const QString replaced = QChar(QChar::ReplacementCharacter);
        constexpr char bytes[] = "a\xC3\xA4\xF0\x9D\x84\x9E";
        constexpr wchar_t pair[] = {0xD834, 0xDD1E, 0};
        constexpr char16_t swapped[] = {0xFFFE, 0x6100, 0};
        constexpr char32_t surrogate[] = {U'a', 0xD800, U'b', 0};
        constexpr char16_t unpaired16[] = {0xDC00, u'a', 0xD800, u'b', 0};
        constexpr wchar_t unpairedWide[] = {0xDC00, L'a', 0xD800, L'b', 0};
        constexpr char32_t pairOf32[] = {0xD834, 0xDD1E, 0};
        const QString decodedBytes = utf8(bytes);
        row(
            "char, by NUL", [&] { return byNul("abc\0def"); }, utf8("abc"));
        row(
            "char, by NUL, UTF-8", [=] { return byNul(bytes); }, decodedBytes);
        row("char, by NUL, null", [] { return byNul<char>(nullptr); }, {});
        row(
            "char, by NUL, invalid", [] { return byNul("a\xFFz"); },
            utf8("a") + replaced + utf8("z"));
        row(
            "char, by length", [] { return byLength("abcdef", 3); }, utf8("abc"));
        row(
            "char, by length, UTF-8", [=] { return byLength(bytes, 3); }, utf8("a\xC3\xA4"));
        row(
            "char, by length, cut", [=] { return byLength(bytes, 2); }, utf8("a") + replaced);
        row("char, by length, null", [] { return byLength<char>(nullptr, 3); }, {});
        row("char, by length, 0", [] { return byLength("abc", 0); }, {});
        row(
            "char, by length, -1", [] { return byLength("abc", -1); }, utf8("abc"));
        row(
            "char, by length, -2", [] { return byLength("abc", -2); }, utf8("abc"));
        row(
            "char16_t, by NUL", [] { return byNul(u"a\u00E4\U0001D11E"); }, decodedBytes);
        row("char16_t, by NUL, null", [] { return byNul<char16_t>(nullptr); }, {});
        row(
            "char16_t, by NUL, mark", [] { return byNul(u"\uFEFFabc"); }, utf8("abc"));
        row(
            "char16_t, by NUL, swapped mark", [=] { return byNul(swapped); }, utf8("a"));
        row(
            "char16_t, by length", [] { return byLength(u"abcdef", 3); }, utf8("abc"));
        row("char16_t, by length, 0", [] { return byLength(u"abc", 0); }, {});
        row(
            "char16_t, by length, -1", [] { return byLength(u"abc", -1); }, utf8("abc"));
        row(
            "char16_t, by length, -2", [] { return byLength(u"abc", -2); }, utf8("abc"));
        row(
            "char32_t, by NUL", [] { return byNul(U"a\u00E4\U0001D11E"); }, decodedBytes);
        row("char32_t, by NUL, null", [] { return byNul<char32_t>(nullptr); }, {});
        row(
            "char32_t, by NUL, surrogate", [=] { return byNul(surrogate); },
            utf8("a") + replaced + utf8("b"));
        row(
            "char32_t, by length", [] { return byLength(U"abcdef", 3); }, utf8("abc"));
        row("char32_t, by length, 0", [] { return byLength(U"abc", 0); }, {});
        row(
            "char32_t, by length, -2", [] { return byLength(U"abc", -2); }, utf8("abc"));
        row(
            "wchar_t, by NUL", [] { return byNul(L"a\u00E4\U0001D11E"); }, decodedBytes);
        row(
            "wchar_t, by NUL, surrogate pair", [=] { return byNul(pair); }, clef);
        row("wchar_t, by NUL, null", [] { return byNul<wchar_t>(nullptr); }, {});
        row(
            "wchar_t, by length", [] { return byLength(L"abcdef", 3); }, utf8("abc"));
        row("wchar_t, by length, 0", [] { return byLength(L"abc", 0); }, {});
        row(
            "wchar_t, by length, -2", [] { return byLength(L"abc", -2); }, utf8("abc"));
        row(
            "char, byte order mark",
            [] {
                return byNul("\xEF\xBB\xBF"
                             "abc");
            },
            utf8("abc"));
        row(
            "char, encoded surrogate", [] { return byNul("a\xED\xA0\x80z"); },
            utf8("a") + replaced + replaced + replaced + utf8("z"));
        row(
            "char, above 0x10FFFF", [] { return byNul("a\xF4\x90\x80\x80z"); },
            utf8("a") + replaced + replaced + replaced + replaced + utf8("z"));
        row(
            "char16_t, unpaired surrogates", [=] { return byNul(unpaired16); },
            QString(reinterpret_cast<const QChar*>(unpaired16), 4));
        row(
            "wchar_t, unpaired surrogates", [=] { return byNul(unpairedWide); },
            QString(reinterpret_cast<const QChar*>(unpaired16), 4));
        row(
            "char32_t, surrogate pair", [=] { return byNul(pairOf32); }, clef);
        row(
            "markup", [] { return byNul("<&>\"'"); }, utf8("&lt;&amp;&gt;&quot;'"));
        row(
            "white space", [] { return byNul("\t\n\r "); }, utf8("&#9;&#10;&#13; "));
        row(
            "not allowed in XML", [] { return byNul("a\x01\x1F\x7Fz"); }, utf8("a\x7Fz"));
    }

    void values()
    {
        QFETCH(std::function<QString()>, write);
        QFETCH(QString, expected);
        QCOMPARE(write(), expected);
    }

    void unpairedSurrogatesAreReadAsQuestionMarks()
    {
        QBuffer buffer;
        buffer.open(QIODevice::ReadWrite);
        {
            constexpr char16_t text[] = {u'a', 0xD800, u'z', 0xDC00, 0};
            Document<char16_t> document(&buffer);
            document.root_element(u"r")->text(text);
        }
        buffer.seek(0);
        qt_stream_xml_document_reader reader(&buffer);
        QCOMPARE(std::string(reader.root_element()->text()), "a?z?"s);
    }

    void attributeBehindATextIsPartOfIt()
    {
        QCOMPARE(written<char>([](Document<char>& document) {
                     const auto root = document.root_element("r");
                     root->text("t");
                     root->attribute("a", "v");
                 }),
                 utf8("<r>t a=\"v\"</r>"));
    }

    void attributesThatNoParserAccepts()
    {
        const auto rootOf = [](const char* first, const char* second) {
            QBuffer buffer;
            buffer.open(QIODevice::ReadWrite);
            {
                Document<char> document(&buffer);
                const auto root = document.root_element("r");
                root->attribute(first, "v");
                root->attribute(second, "w");
            }
            buffer.seek(0);
            qt_stream_xml_document_reader reader(&buffer);
            return reader.root_element() ? "root"s : "none"s;
        };
        QCOMPARE(rootOf("a", "b"), "root"s);
        QCOMPARE(rootOf("a", "a"), "none"s);
        QCOMPARE(rootOf("a", nullptr), "none"s);
    }

    void unitsThatAreNoCharactersHurtNothing()
    {
        constexpr char32_t outside[] = {U'a', 0x110000, 0xFFFFFFFF, U'b', 0};
        const QString text = byNul(outside);
        QVERIFY(text.startsWith(QLatin1Char('a')) && text.endsWith(QLatin1Char('b')));
    }

    void namesAndTexts()
    {
        namesAndTextsOf<char>("n\xC3\xA4me\xF0\x9D\x84\x9E");
        namesAndTextsOf<char16_t>(u"n\u00E4me\U0001D11E");
        namesAndTextsOf<char32_t>(U"n\u00E4me\U0001D11E");
        namesAndTextsOf<wchar_t>(L"n\u00E4me\U0001D11E");
    }

    void manyCharactersAboveFFFF()
    {
        // More than fit into one block of anything, mixed with others.
        std::u32string text;
        for (char32_t code = 0x10000; code < 0x10000 + 100'000; ++code)
            text += {code, U'x'};
        const QString actual = written<char32_t>([&text](Document<char32_t>& document) {
            document.root_element(U"r")->text(text.c_str());
        });
        QCOMPARE(actual, "<r>" + QString::fromStdU32String(text) + "</r>");
    }

    void elementTakesItsNameWhole()
    {
        QByteArray bytes;
        const auto stream = std::make_shared<QXmlStreamWriter>(&bytes);
        {
            basic_qt_stream_xml_element_writer<char32_t> element(U"n\u00E4me", stream);
            element.text(U"t");
        }
        QCOMPARE(bytes, QByteArray("<n\xC3\xA4me>t</n\xC3\xA4me>"));
        QCOMPARE(stream.use_count(), 1L);
    }

private:
    template <typename C>
    static void namesAndTextsOf(const C* text)
    {
        const QString actual = written<C>([text](Document<C>& document) {
            const Element<C> root = document.root_element(text);
            root->attribute(text, units<C>("v").c_str());
            root->attribute(units<C>("b").c_str(), units<C>("vw").c_str(), 1);
            root->text(nullptr);
            root->text(text);
            root->text(units<C>("<&>\"").c_str());
            root->child(text);
        });
        const QString name = utf8("n\xC3\xA4me\xF0\x9D\x84\x9E");
        QCOMPARE(actual, utf8("<%1 %1=\"v\" b=\"v\">%1&lt;&amp;&gt;&quot;<%1/></%1>").arg(name));
    }
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_writer_text)
#include "tst_qt_stream_xml_writer_text.moc"
