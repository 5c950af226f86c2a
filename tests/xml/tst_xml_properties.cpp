#include "impl/xml/basic_qt_stream_xml_document_writer.h"
#include "impl/xml/qt_stream_xml_document_reader.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include "support/RecursiveXmlReader.h"
#include "support/XmlCaller.h"
#include "support/XmlTree.h"
#include "support/rapidcheck.h"

#include <QBuffer>
#include <QDomDocument>
#include <QTest>
#include <QTextCodec>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace zvutil::experimental::xml;
using zvtest::XmlTree;

namespace {

using Reader = zvutil::experimental::unique_destroyable_ptr<abstract_xml_element_reader>;

std::string localName(const std::string& name)
{
    return name.substr(name.find(':') + 1);
}

/// By local names, of which the last one wins.
std::map<std::string, std::string> reduced(const XmlTree& tree)
{
    std::map<std::string, std::string> attributes;
    for (const auto& [name, value] : tree.attributes)
        attributes[localName(name)] = value;
    return attributes;
}

std::optional<std::string> attributeOf(const Reader& reader, const std::string& name)
{
    try {
        return reader->attribute(name.c_str());
    } catch (const attribute_not_found_xml_exception& error) {
        RC_ASSERT(error.what() == name);
        return std::nullopt;
    }
}

void checkStart(const Reader& reader, const XmlTree& tree)
{
    RC_ASSERT(reader->name() == localName(tree.name));
    const auto attributes = reduced(tree);
    for (const char* const name : {"x", "y", "z", "p:x", "\xC3\xA4"}) {
        const auto expected = attributes.find(name);
        const auto actual = attributeOf(reader, name);
        RC_ASSERT(actual.has_value() == (expected != attributes.end()));
        RC_ASSERT(!actual || *actual == expected->second);
    }
}

void checkTree(const Reader& reader, const XmlTree& tree)
{
    RC_ASSERT(static_cast<bool>(reader));
    checkStart(reader, tree);
    if (tree.children.empty()) {
        RC_ASSERT(reader->text() == tree.text);
        return;
    }
    for (const XmlTree& child : tree.children)
        checkTree(reader->next_child(), child);
    RC_ASSERT(!reader->next_child());
}

/// The order of attributes isn't kept in \p element, so \p tree tells it, and nothing else.
void checkElement(const Reader& reader, const QDomElement& element, const XmlTree& tree)
{
    RC_ASSERT(static_cast<bool>(reader));
    RC_ASSERT(reader->name() == element.localName().toStdString());
    std::map<std::string, std::string> whole;
    for (int i = 0; i < element.attributes().size(); ++i) {
        const QDomNode attribute = element.attributes().item(i);
        whole[attribute.nodeName().toStdString()] = attribute.nodeValue().toStdString();
    }
    std::map<std::string, std::string> attributes;
    for (const auto& attribute : tree.attributes) {
        RC_ASSERT(whole.count(attribute.first) == 1U);
        attributes[localName(attribute.first)] = whole[attribute.first];
    }
    for (const auto& [name, value] : attributes)
        RC_ASSERT(reader->attribute(name.c_str()) == value);
    QDomElement child = element.firstChildElement();
    if (child.isNull()) {
        RC_ASSERT(reader->text() == element.text().toStdString());
        return;
    }
    for (const XmlTree& childTree : tree.children) {
        checkElement(reader->next_child(), child, childTree);
        child = child.nextSiblingElement();
    }
    RC_ASSERT(child.isNull());
    RC_ASSERT(!reader->next_child());
}

void open(QBuffer& buffer, const QByteArray& bytes)
{
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
}

/// The bytes of a document in one of several encodings.
QByteArray anyEncoding(const XmlTree& tree, zvtest::XmlMarkup markup)
{
    const char* const encoding = *rc::gen::element("UTF-8", "UTF-16", "UTF-32", "ISO-8859-15");
    QString text = markup.document(tree, encoding);
    const QString treble = QString::fromUtf8("\xF0\x9D\x84\x9E");
    const bool inCharacterData = text.contains("<![CDATA[" + treble);
    // What the encoder or the encoding can't tell becomes a reference, where that is one.
    if (std::string(encoding) == "UTF-32" || std::string(encoding) == "ISO-8859-15") {
        RC_PRE(!inCharacterData);
        text.replace(treble, QString::fromUtf8("&#x1D11E;"));
    }
    QTextCodec::ConverterState state(*rc::gen::arbitrary<bool>() ? QTextCodec::IgnoreHeader
                                                                 : QTextCodec::DefaultConversion);
    return QTextCodec::codecForName(encoding)->fromUnicode(text.constData(), text.size(), &state);
}

bool isNull(const Reader& reader)
{
    try {
        reader->next_child();
        return false;
    } catch (const null_element_xml_exception&) {
        return true;
    }
}

/// A caller that leaves elements wherever it likes, and keeps some of them.
class Wanderer
{
public:
    void walk(Reader reader, const XmlTree& tree)
    {
        checkStart(reader, tree);
        switch (*rc::gen::inRange(0, 6)) {
        case 0:
            break;
        case 1:
            if (tree.children.empty())
                RC_ASSERT(reader->text() == tree.text);
            break;
        default:
            walkChildren(reader, tree);
        }
        RC_ASSERT(reader->name() == localName(tree.name));
        if (*rc::gen::inRange(0, 3) == 0)
            m_held.push_back(std::move(reader));
    }

    const std::vector<Reader>& held() const { return m_held; }

    void letAllGo()
    {
        while (!m_held.empty())
            letOneGo();
    }

private:
    void walkChildren(const Reader& reader, const XmlTree& tree)
    {
        const std::size_t most = *rc::gen::inRange<std::size_t>(0, tree.children.size() + 2);
        for (std::size_t i = 0; i < most; ++i) {
            const std::size_t heldBefore = m_held.size();
            Reader child = reader->next_child();
            RC_ASSERT(static_cast<bool>(child) == (i < tree.children.size()));
            if (!child)
                return;
            walk(std::move(child), tree.children[i]);
            if (*rc::gen::inRange(0, 8) == 0 && m_held.size() > heldBefore)
                letOneGo();
        }
    }

    void letOneGo()
    {
        const std::size_t index = *rc::gen::inRange<std::size_t>(0, m_held.size());
        m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(index));
    }

    std::vector<Reader> m_held;
};

template <typename C>
std::basic_string<C> unitsOf(const std::string& text)
{
    const QString units = QString::fromStdString(text);
    if constexpr (std::is_same_v<C, char>)
        return text;
    else if constexpr (std::is_same_v<C, char16_t>)
        return units.toStdU16String();
    else if constexpr (std::is_same_v<C, char32_t>)
        return units.toStdU32String();
    else
        return units.toStdWString();
}

template <typename C>
using Writer = zvutil::experimental::unique_destroyable_ptr<basic_abstract_xml_element_writer<C>>;

template <typename C>
void write(const Writer<C>& writer, const XmlTree& tree)
{
    for (const auto& [name, value] : tree.attributes) {
        const std::basic_string<C> units = unitsOf<C>(value);
        if (*rc::gen::arbitrary<bool>())
            writer->attribute(unitsOf<C>(name).c_str(), units.c_str());
        else
            writer->attribute(unitsOf<C>(name).c_str(), units.c_str(),
                              static_cast<int>(units.size()));
    }
    writer->text(unitsOf<C>(tree.text).c_str());
    for (const XmlTree& child : tree.children)
        write<C>(writer->child(unitsOf<C>(child.name).c_str()), child);
}

template <typename C>
QByteArray written(const XmlTree& tree)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        basic_qt_stream_xml_document_writer<C> document(&buffer);
        const Writer<C> root = document.root_element(unitsOf<C>(tree.name).c_str());
        root->attribute(unitsOf<C>("xmlns:p").c_str(), unitsOf<C>("urn:p").c_str());
        root->attribute(unitsOf<C>("xmlns:q").c_str(), unitsOf<C>("urn:q").c_str());
        write<C>(root, tree);
    }
    return buffer.data();
}

template <typename C>
void comesBack()
{
    const XmlTree tree = zvtest::anyXmlTree();
    QBuffer buffer;
    open(buffer, written<C>(tree));
    qt_stream_xml_document_reader document(&buffer);
    checkTree(document.root_element(), tree);
    RC_ASSERT(!document.next_element());
}

/// A document that may be broken.
QByteArray anyBytes()
{
    QByteArray bytes = anyEncoding(zvtest::anyXmlTree(), zvtest::XmlMarkup(true));
    switch (*rc::gen::inRange(0, 4)) {
    case 0:
        bytes.truncate(*rc::gen::inRange(0, bytes.size() + 1));
        break;
    case 1:
        bytes[*rc::gen::inRange(0, bytes.size())] =
            *rc::gen::element('<', '>', '/', '&', 'x', '\0');
        break;
    default:
        break;
    }
    return bytes;
}

std::string logOf(abstract_xml_document_reader& document, const std::vector<std::uint8_t>& script)
{
    zvtest::XmlCaller caller(document);
    for (const std::uint8_t byte : script)
        caller.step(byte);
    return caller.log();
}

} // namespace

class tst_xml_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatAnotherParserReads()
    {
        QVERIFY(rc::check("names, attributes and texts are those of QDomDocument", [] {
            const XmlTree tree = zvtest::anyXmlTree();
            zvtest::XmlMarkup markup(false);
            const QString text = markup.document(tree, "UTF-8");
            QDomDocument other;
            RC_ASSERT(other.setContent(text, true));
            QBuffer buffer;
            open(buffer, text.toUtf8());
            qt_stream_xml_document_reader document(&buffer);
            checkElement(document.root_element(), other.documentElement(), tree);
            RC_ASSERT(!document.next_element());
        }));
    }

    void readsWhatIsMeant()
    {
        QVERIFY(rc::check("a tree comes out in any markup and any encoding", [] {
            const XmlTree tree = zvtest::anyXmlTree();
            QBuffer buffer;
            open(buffer, anyEncoding(tree, zvtest::XmlMarkup(*rc::gen::arbitrary<bool>())));
            qt_stream_xml_document_reader document(&buffer);
            checkTree(document.root_element(), tree);
            RC_ASSERT(!document.root_element());
            RC_ASSERT(!document.next_element());
        }));
    }

    void nextSiblingIsFoundWhateverTheCallerLeaves()
    {
        QVERIFY(rc::check("a parent goes on at the right child", [] {
            const XmlTree tree = zvtest::anyXmlTree();
            zvtest::XmlMarkup markup(true);
            QBuffer buffer;
            open(buffer, markup.document(tree, "UTF-8").toUtf8());
            qt_stream_xml_document_reader document(&buffer);
            Wanderer wanderer;
            const bool keep = *rc::gen::arbitrary<bool>();
            Reader root = document.root_element();
            if (keep) {
                for (const XmlTree& child : tree.children)
                    wanderer.walk(root->next_child(), child);
                RC_ASSERT(!root->next_child());
                for (const Reader& held : wanderer.held())
                    RC_ASSERT(isNull(held));
            } else {
                wanderer.walk(std::move(root), tree);
            }
            wanderer.letAllGo();
            RC_ASSERT(!document.next_element());
        }));
    }

    void skippingIsReadingByRecursion()
    {
        QVERIFY(rc::check("any caller is given the same as by the plain rules", [] {
            const QByteArray bytes = anyBytes();
            const auto script =
                *rc::gen::resize(200, rc::gen::arbitrary<std::vector<std::uint8_t>>());
            QBuffer buffer;
            open(buffer, bytes);
            QBuffer plainBuffer;
            open(plainBuffer, bytes);
            qt_stream_xml_document_reader document(&buffer);
            zvtest::RecursiveDocument plain(&plainBuffer);
            RC_ASSERT(logOf(document, script) == logOf(plain, script));
            // Both stand at the same place.
            RC_ASSERT(buffer.pos() == plainBuffer.pos());
            RC_ASSERT(logOf(document, {1, 1, 1}) == logOf(plain, {1, 1, 1}));
        }));
    }

    void whatIsWrittenComesBack()
    {
        QVERIFY(rc::check("written as char", &comesBack<char>));
        QVERIFY(rc::check("written as char16_t", &comesBack<char16_t>));
        QVERIFY(rc::check("written as char32_t", &comesBack<char32_t>));
        QVERIFY(rc::check("written as wchar_t", &comesBack<wchar_t>));
    }

    void allFourWriteTheSame()
    {
        QVERIFY(rc::check("the same document in four types differs in its encoding only", [] {
            const XmlTree tree = zvtest::anyXmlTree();
            const QByteArray narrow = written<char>(tree);
            const QByteArray wide = written<wchar_t>(tree);
            const QByteArray wider = written<char32_t>(tree);
            RC_ASSERT(written<char16_t>(tree) == wide);
            const auto text = [](const QByteArray& bytes, const char* codec) {
                QString all = QTextCodec::codecForName(codec)->toUnicode(bytes);
                return all.mid(all.indexOf("?>"));
            };
            RC_ASSERT(text(wide, "UTF-16LE") == text(narrow, "UTF-8"));
            RC_ASSERT(text(wider, "UTF-32LE") == text(narrow, "UTF-8"));
        }));
    }
};

QTEST_APPLESS_MAIN(tst_xml_properties)
#include "tst_xml_properties.moc"
