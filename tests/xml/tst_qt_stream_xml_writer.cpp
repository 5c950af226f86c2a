#include "impl/xml/basic_qt_stream_xml_document_writer.h"
#include "impl/xml/basic_qt_stream_xml_element_writer.h"
#include "impl/xml/basic_qt_xml_save_file.h"
#include "impl/xml/qt_stream_xml_document_reader.h"
#include "impl/xml/qt_xml_read_file.h"

#include "support/EventLoop.h"
#include "support/HeldFiles.h"
#include "support/StdString.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

using namespace zvutil::experimental::xml;
using namespace std::string_literals;

namespace {

template <typename C>
using Document = basic_qt_stream_xml_document_writer<C>;
template <typename C>
using Element = zvutil::experimental::unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>;

/// An ASCII text in units of any type.
template <typename C>
std::basic_string<C> units(std::string_view text)
{
    return {text.begin(), text.end()};
}

template <typename C>
constexpr const char* encoding = std::is_same_v<C, char> ? "UTF-8"
    : std::is_same_v<C, char32_t>                        ? "UTF-32"
                                                         : "UTF-16";

/// Bytes of a file of this type of writer, each unit as it lies in memory.
template <typename C>
QString decoded(const QByteArray& bytes)
{
    if constexpr (std::is_same_v<C, char>) {
        return QString::fromUtf8(bytes);
    } else if constexpr (std::is_same_v<C, char32_t>) {
        return QString::fromUcs4(reinterpret_cast<const char32_t*>(bytes.constData()),
                                 bytes.size() / 4);
    } else {
        return QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
    }
}

template <typename C>
QString declaration()
{
    return QString::fromUtf8("<?xml version=\"1.0\" encoding=\"%1\"?>")
        .arg(QString::fromUtf8(encoding<C>));
}

/// What is written behind the declaration, with the line break at the end taken off.
template <typename C, typename Write>
QString written(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        Document<C> document(&buffer);
        write(document);
    }
    const QString text = decoded<C>(buffer.data());
    const QString start = declaration<C>();
    if (!text.startsWith(start) || !text.endsWith(QLatin1Char('\n')))
        return QLatin1String("wrong frame: ") + text;
    return text.mid(start.size(), text.size() - start.size() - 1);
}

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
        return QLatin1String("wrong frame: ") + text;
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

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

/// A buffer that fails from some byte on.
class Failing : public QIODevice
{
public:
    explicit Failing(qint64 space)
        : m_space(space)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    int failures = 0;

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char* /*data*/, qint64 size) override
    {
        if (size > m_space) {
            ++failures;
            return -1;
        }
        m_space -= size;
        return size;
    }

private:
    qint64 m_space;
};

/// A file on a disk that gets full: it takes the beginning of what doesn't fit, and sets no error.
class FullDisk : public QSaveFile
{
public:
    FullDisk(const QString& name, qint64 space)
        : QSaveFile(name)
        , m_space(space)
    {
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taken = std::min(size, m_space);
        m_space -= taken;
        return taken > 0 ? QSaveFile::writeData(data, taken) : -1;
    }

private:
    qint64 m_space;
};

enum class Piece { Text, Attribute, AttributeOfALength, ManyElements };

template <typename C>
void writePiece(basic_abstract_xml_element_writer<C>& element, Piece piece, int length)
{
    const std::basic_string<C> value(static_cast<std::size_t>(length), C('x'));
    const std::basic_string<C> name = units<C>("name");
    if (piece == Piece::Text)
        element.text(value.c_str());
    else if (piece == Piece::Attribute)
        element.attribute(name.c_str(), value.c_str());
    else if (piece == Piece::AttributeOfALength)
        element.attribute(name.c_str(), value.c_str(), length);
    for (int i = 0; piece == Piece::ManyElements && i < length / 8; ++i)
        element.child(name.c_str());
}

/// Saves over \p target on a disk that takes \p space bytes, all if it is negative. Returns what
/// `commit` returns; the file may be committed by its caller itself.
template <typename C>
bool savedWithin(qint64 space, Piece piece, int length, const QString& target, bool callerCommits)
{
    const auto file =
        std::make_shared<FullDisk>(target, space < 0 ? std::numeric_limits<qint64>::max() : space);
    basic_qt_xml_save_file<C> document(file);
    writePiece(*document.root_element(units<C>("r").c_str()), piece, length);
    return callerCommits ? file->commit() : document.commit();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

} // namespace

Q_DECLARE_METATYPE(std::function<QString()>)
Q_DECLARE_METATYPE(Piece)

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
        QCOMPARE(actual,
                 QLatin1String("<r>") + QString::fromStdU32String(text) + QLatin1String("</r>"));
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
                 QLatin1String("<r>") + QString::fromUtf8("<a>").repeated(19)
                     + QLatin1String("<a/>") + QString::fromUtf8("</a>").repeated(19)
                     + QLatin1String("</r>"));
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

    void closedDeviceIsNoError()
    {
        QBuffer closed;
        {
            Document<char> narrow(&closed);
            narrow.root_element("r")->text("t");
            Document<char32_t> wide(&closed);
            wide.root_element(U"r")->text(U"t");
            Document<char16_t> none(nullptr);
            none.root_element(u"r");
        }
        QVERIFY(closed.data().isEmpty());
    }

    void writeErrorsAreTriedOnce()
    {
        for (const qint64 space : {0, 38, 50}) {
            Failing device(space);
            {
                Document<char> document(&device);
                document.root_element("root")->text("a longer text for which there is no space");
            }
            QCOMPARE(device.failures, 1);
            Failing wide(4 * space);
            {
                Document<char32_t> document(&wide);
                document.root_element(U"root")->text(U"a longer text that finds no space");
            }
            QCOMPARE(wide.failures, 1);
        }
    }

    void saveFileTakesAFileOfItsCaller()
    {
        const QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("a.xml"));
        QPointer<QSaveFile> watched;
        {
            const auto file = std::make_shared<QSaveFile>(target);
            watched = file.get();
            basic_qt_xml_save_file<char> document(file);
            QVERIFY(file->isOpen());
            QVERIFY(!file->isTextModeEnabled());
            document.root_element("r");
            QVERIFY(document.commit());
            QVERIFY(!file->isOpen());
        }
        // Its owner's deleter is used, whatever that does.
        QVERIFY(!watched);
        QFile saved(target);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), declaration<char>().toUtf8() + "<r/>");
    }

    void fullDiskIsTold_data()
    {
        QTest::addColumn<Piece>("piece");
        QTest::addColumn<int>("length");
        const auto row = [](const char* name, Piece piece) {
            // Shorter and longer than the blocks in which the document and the file write.
            for (const int length : {100, 16'000, 20'000, 200'000})
                QTest::addRow("%s of %d", name, length) << piece << length;
        };
        row("text", Piece::Text);
        row("attribute", Piece::Attribute);
        row("attribute with a length", Piece::AttributeOfALength);
        row("elements", Piece::ManyElements);
    }

    void fullDiskIsTold()
    {
        fullDiskIsToldBy<char>();
        fullDiskIsToldBy<char16_t>();
        fullDiskIsToldBy<char32_t>();
        fullDiskIsToldBy<wchar_t>();
    }

    void unwritableTargetsFailSilently_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing folder")
            << QDir::tempPath() + QStringLiteral("/zvutil missing/a.xml");
        QTest::newRow("folder") << QDir::tempPath();
    }

    void unwritableTargetsFailSilently()
    {
        QFETCH(QString, path);
        const auto fails = [&path](auto unit) {
            using C = decltype(unit);
            basic_qt_xml_save_file<C> document(path.toStdWString());
            const Element<C> root = document.root_element(units<C>("r").c_str());
            writePiece<C>(*root, Piece::Attribute, 3);
            writePiece<C>(*root, Piece::Text, 100'000);
            document.cancel_writing();
            QVERIFY(!document.commit());
            writePiece<C>(*root, Piece::ManyElements, 100);
            QVERIFY(!document.commit());
        };
        QCOMPARE(zvtest::warningsOf([&fails] {
                     fails(char());
                     fails(char16_t());
                     fails(char32_t());
                     fails(wchar_t());
                 }),
                 QStringList());
    }

    void readFileTakesAFileOfItsCaller()
    {
        const QTemporaryDir folder;
        const auto missing = std::make_shared<QFile>(folder.filePath(QStringLiteral("a.xml")));
        qt_xml_read_file none(missing);
        QVERIFY(!missing->isReadable());
        QVERIFY(!none.root_element());

        QFile written(missing->fileName());
        QVERIFY(written.open(QIODevice::WriteOnly));
        written.write("<r/>");
        written.close();
        const auto there = std::make_shared<QFile>(missing->fileName());
        qt_xml_read_file document(there);
        QVERIFY(there->isReadable() && !there->isWritable());
        QVERIFY(!there->isTextModeEnabled());
        QCOMPARE(document.root_element()->name(), "r");
    }

    void elementsKeepTheirFileOpen()
    {
        const QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("a.xml"));
        auto document = std::make_unique<basic_qt_xml_save_file<char32_t>>(target.toStdWString());
        Element<char32_t> root = document->root_element(U"r");
        Element<char32_t> child = root->child(U"c");
        document.reset();
        root.reset();
        zvtest::runEventLoop();
        // There is still something to write to, and the file goes with the last element.
        QVERIFY(!zvtest::temporaryFiles(folder.path(), target).isEmpty());
        child->text(U"t");
        child.reset();
        zvtest::runEventLoop();
        QCOMPARE(zvtest::temporaryFiles(folder.path(), target), QStringList());
        QVERIFY(!QFile::exists(target));
    }

    void usualSaveIsSilent()
    {
        const QTemporaryDir folder;
        const std::wstring target = folder.filePath(QStringLiteral("a.xml")).toStdWString();
        QCOMPARE(zvtest::warningsOf([&target] { QVERIFY(saved<char>(target)); }), QStringList());
        QCOMPARE(zvtest::warningsOf([&target] { QVERIFY(saved<char32_t>(target)); }),
                 QStringList());
    }

private:
    template <typename C>
    static void fullDiskIsToldBy()
    {
        QFETCH(Piece, piece);
        QFETCH(int, length);
        const QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("a.xml"));
        QVERIFY(savedWithin<C>(-1, piece, length, target, false));
        const qint64 size = QFileInfo(target).size();
        const QByteArray old = contentOf(target);
        for (const qint64 space : {qint64(0), size / 7, size / 2, size - size / 3, size - 1}) {
            for (const bool callerCommits : {false, true}) {
                QVERIFY(!savedWithin<C>(space, piece, length, target, callerCommits));
                QVERIFY(contentOf(target) == old);
                QCOMPARE(zvtest::temporaryFiles(folder.path(), target), QStringList());
            }
        }
        QVERIFY(savedWithin<C>(size, piece, length, target, true));
        QVERIFY(contentOf(target) == old);
    }

    template <typename C>
    static bool saved(const std::wstring& target)
    {
        basic_qt_xml_save_file<C> document(target);
        document.root_element(units<C>("r").c_str());
        return document.commit();
    }

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

QTEST_GUILESS_MAIN(tst_qt_stream_xml_writer)
#include "tst_qt_stream_xml_writer.moc"
