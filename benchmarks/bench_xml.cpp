// Walking and writing a document of 100 MB: the library against the bare stream classes of Qt that do
// the same necessary work, and against two other libraries.

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>

#include "support/Quick.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <benchmark/benchmark.h>
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>
#include <pugixml.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr int itemsPerGroup = 10;
const char* const attributeNames[] = {"id", "name", "value"};

int groupCount()
{
    return zvbench::isQuick() ? 100 : 100'000;
}

class File : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::reader;
    using ZvXMLReadFile::ZvXMLReadFile;
};

class SaveFile : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile<char>::writer;
    using ZvBasicXMLSaveFile<char>::ZvBasicXMLSaveFile;
};

/// Deletes the files that have been let go, as an application's event loop does.
void runEventLoop()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::string valueOf(int item)
{
    return "value of the item " + std::to_string(item);
}

/// Three attributes for each element, and a text for each item.
template <typename Element>
void writeAttributes(const Element& element, int number)
{
    element->attribute("id", std::to_string(number).c_str());
    element->attribute("name", "a name");
    element->attribute("value", valueOf(number).c_str());
}

bool writeByLibrary(const QString& path)
{
    SaveFile file(path.toStdWString());
    {
        const auto root = file.writer().root_element("plan");
        writeAttributes(root, 0);
        for (int i = 0; i < groupCount(); ++i) {
            const auto group = root->child("group");
            writeAttributes(group, i);
            for (int k = 0; k < itemsPerGroup; ++k) {
                const auto item = group->child("item");
                writeAttributes(item, k);
                item->text("text of the item");
            }
        }
    }
    return file.commit();
}

const QString& folder()
{
    static const QTemporaryDir directory;
    static const QString path = directory.path();
    return path;
}

const QString& document()
{
    static const QString path = [] {
        QString file = folder() + QStringLiteral("/read.xml");
        writeByLibrary(file);
        return file;
    }();
    return path;
}

/// How much has been read, by which all contenders are compared.
struct Sum
{
    std::size_t elements = 0;
    std::size_t bytes = 0;

    void add(std::string_view text) { bytes += text.size(); }
    bool operator!=(const Sum& other) const
    {
        return elements != other.elements || bytes != other.bytes;
    }
};

std::string utf8(const QStringRef& text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// The necessary work for one element: its name and attributes in UTF-8.
void addElement(Sum& sum, const QXmlStreamReader& stream,
                std::vector<std::pair<std::string, std::string>>& attributes)
{
    ++sum.elements;
    sum.add(utf8(stream.name()));
    attributes.clear();
    const QXmlStreamAttributes source = stream.attributes();
    for (const QXmlStreamAttribute& attribute : source)
        attributes.emplace_back(utf8(attribute.name()), utf8(attribute.value()));
    for (const char* const name : attributeNames) {
        for (const auto& [key, value] : attributes) {
            if (key == name) {
                sum.add(value);
                break;
            }
        }
    }
}

Sum readByStream()
{
    Sum sum;
    std::vector<std::pair<std::string, std::string>> attributes;
    QFile file(document());
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader stream(&file);
    while (!stream.atEnd()) {
        if (stream.readNext() != QXmlStreamReader::StartElement)
            continue;
        addElement(sum, stream, attributes);
        if (stream.name() == QLatin1String("item"))
            sum.add(stream.readElementText().toStdString());
    }
    return sum;
}

template <typename Element>
void addElement(Sum& sum, const Element& element)
{
    ++sum.elements;
    sum.add(element->name());
    for (const char* const name : attributeNames)
        sum.add(element->attribute(name));
}

Sum readByLibrary()
{
    Sum sum;
    {
        File file(document().toStdWString());
        const auto root = file.reader().root_element();
        addElement(sum, root);
        while (const auto group = root->next_child()) {
            addElement(sum, group);
            while (const auto item = group->next_child()) {
                addElement(sum, item);
                sum.add(item->text());
            }
        }
    }
    runEventLoop();
    return sum;
}

void addElement(Sum& sum, const pugi::xml_node& node)
{
    ++sum.elements;
    sum.add(node.name());
    for (const char* const name : attributeNames)
        sum.add(node.attribute(name).value());
}

Sum readByPugixml()
{
    Sum sum;
    pugi::xml_document parsed;
    parsed.load_file(document().toUtf8().constData());
    const pugi::xml_node root = parsed.document_element();
    addElement(sum, root);
    for (const pugi::xml_node& group : root) {
        addElement(sum, group);
        for (const pugi::xml_node& item : group) {
            addElement(sum, item);
            sum.add(item.child_value());
        }
    }
    return sum;
}

std::string_view view(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

void addElement(Sum& sum, xmlTextReaderPtr reader)
{
    ++sum.elements;
    sum.add(view(xmlTextReaderConstLocalName(reader)));
    while (xmlTextReaderMoveToNextAttribute(reader) == 1)
        sum.add(view(xmlTextReaderConstValue(reader)));
}

Sum readByLibxml2()
{
    Sum sum;
    xmlTextReaderPtr const reader =
        xmlReaderForFile(document().toUtf8().constData(), nullptr, XML_PARSE_HUGE);
    while (xmlTextReaderRead(reader) == 1) {
        const int type = xmlTextReaderNodeType(reader);
        if (type == XML_READER_TYPE_ELEMENT)
            addElement(sum, reader);
        else if (type == XML_READER_TYPE_TEXT)
            sum.add(view(xmlTextReaderConstValue(reader)));
    }
    xmlFreeTextReader(reader);
    return sum;
}

void read(benchmark::State& state, Sum (*contender)())
{
    static const Sum expected = readByStream();
    for (auto _ : state) {
        if (contender() != expected)
            state.SkipWithError("reads something else");
    }
    state.SetBytesProcessed(state.iterations() * QFile(document()).size());
}

/// Each group is looked at and left.
void skip(benchmark::State& state)
{
    for (auto _ : state) {
        {
            File file(document().toStdWString());
            const auto root = file.reader().root_element();
            int groups = 0;
            while (const auto group = root->next_child())
                groups += *group->name() == 'g' ? 1 : 0;
            if (groups != groupCount())
                state.SkipWithError("skips something else");
        }
        runEventLoop();
    }
}

void writeAttributes(QXmlStreamWriter& stream, int number)
{
    stream.writeAttribute(QString::fromUtf8("id"),
                          QString::fromUtf8(std::to_string(number).c_str()));
    stream.writeAttribute(QString::fromUtf8("name"), QString::fromUtf8("a name"));
    stream.writeAttribute(QString::fromUtf8("value"), QString::fromUtf8(valueOf(number).c_str()));
}

bool writeByStream(const QString& path)
{
    QSaveFile file(path);
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter stream(&file);
    stream.writeStartDocument();
    stream.writeStartElement(QString::fromUtf8("plan"));
    writeAttributes(stream, 0);
    for (int i = 0; i < groupCount(); ++i) {
        stream.writeStartElement(QString::fromUtf8("group"));
        writeAttributes(stream, i);
        for (int k = 0; k < itemsPerGroup; ++k) {
            stream.writeStartElement(QString::fromUtf8("item"));
            writeAttributes(stream, k);
            stream.writeCharacters(QString::fromUtf8("text of the item"));
            stream.writeEndElement();
        }
        stream.writeEndElement();
    }
    stream.writeEndElement();
    return file.commit();
}

const xmlChar* text(const char* bytes)
{
    return reinterpret_cast<const xmlChar*>(bytes);
}

void startElement(xmlTextWriterPtr writer, const char* name, int number)
{
    xmlTextWriterStartElement(writer, text(name));
    xmlTextWriterWriteAttribute(writer, text("id"), text(std::to_string(number).c_str()));
    xmlTextWriterWriteAttribute(writer, text("name"), text("a name"));
    xmlTextWriterWriteAttribute(writer, text("value"), text(valueOf(number).c_str()));
}

bool writeByLibxml2(const QString& path)
{
    xmlTextWriterPtr const writer = xmlNewTextWriterFilename(path.toUtf8().constData(), 0);
    xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr);
    startElement(writer, "plan", 0);
    for (int i = 0; i < groupCount(); ++i) {
        startElement(writer, "group", i);
        for (int k = 0; k < itemsPerGroup; ++k) {
            startElement(writer, "item", k);
            xmlTextWriterWriteString(writer, text("text of the item"));
            xmlTextWriterEndElement(writer);
        }
        xmlTextWriterEndElement(writer);
    }
    xmlTextWriterEndElement(writer);
    const bool written = xmlTextWriterEndDocument(writer) >= 0;
    xmlFreeTextWriter(writer);
    return written;
}

void append(pugi::xml_node& node, int number)
{
    node.append_attribute("id") = number;
    node.append_attribute("name") = "a name";
    node.append_attribute("value") = valueOf(number).c_str();
}

bool writeByPugixml(const QString& path)
{
    pugi::xml_document made;
    pugi::xml_node root = made.append_child("plan");
    append(root, 0);
    for (int i = 0; i < groupCount(); ++i) {
        pugi::xml_node group = root.append_child("group");
        append(group, i);
        for (int k = 0; k < itemsPerGroup; ++k) {
            pugi::xml_node item = group.append_child("item");
            append(item, k);
            item.append_child(pugi::node_pcdata).set_value("text of the item");
        }
    }
    return made.save_file(path.toUtf8().constData(), "", pugi::format_raw);
}

/// All write the same document, but for what stands around the root.
void write(benchmark::State& state, bool (*contender)(const QString&))
{
    const QString path = folder() + QStringLiteral("/write.xml");
    for (auto _ : state) {
        if (!contender(path))
            state.SkipWithError("can't write");
        runEventLoop();
    }
    const qint64 more = QFile(path).size() - QFile(document()).size();
    if (more < -100 || more > 100)
        state.SkipWithError("writes something else");
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
}

template <typename... Arguments>
void add(const char* name, Arguments... arguments)
{
    benchmark::RegisterBenchmark(name, arguments...)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
    add("read/floor", &read, &readByStream);
    add("read/library", &read, &readByLibrary);
    add("read/library, each group left", &skip);
    add("read/pugixml", &read, &readByPugixml);
    add("read/libxml2 reader", &read, &readByLibxml2);
    add("write/floor", &write, &writeByStream);
    add("write/library", &write, &writeByLibrary);
    add("write/pugixml", &write, &writeByPugixml);
    add("write/libxml2 writer", &write, &writeByLibxml2);
    return true;
}();

} // namespace
