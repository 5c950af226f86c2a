// A small document format on the library's XML files: a list of parts.
//
//   parts_list FILE                          shows the list
//   parts_list FILE NAME QUANTITY [NOTE]     adds a part and saves the list
//
// The file looks like this:
//
//   <parts version="1"><part name="R1" quantity="2"><note>0.1 W</note></part></parts>

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QStringList>

#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace xml = zvutil::experimental::xml;

namespace {

struct Part
{
    std::string name;
    std::string quantity;
    std::string note;
};

using PartsList = std::vector<Part>;

class PartsListReader : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::ZvXMLReadFile;

    /// Nothing if the file can't be read or is no list of parts.
    std::optional<PartsList> read()
    {
        const auto root = reader().root_element();
        if (!root || std::string_view(root->name()) != "parts")
            return std::nullopt;
        PartsList list;
        // What this version doesn't know is left; it is skipped when its reader goes.
        while (const auto child = root->next_child()) {
            if (std::string_view(child->name()) == "part")
                list.push_back(part(*child));
        }
        return list;
    }

private:
    static Part part(xml::abstract_xml_element_reader& element)
    {
        Part result = {element.attribute("name"), optional(element, "quantity", "1"), {}};
        while (const auto child = element.next_child()) {
            if (std::string_view(child->name()) == "note")
                result.note = child->text();
        }
        return result;
    }

    static std::string optional(const xml::abstract_xml_element_reader& element, const char* name,
                                const char* otherwise)
    {
        try {
            return element.attribute(name);
        } catch (const xml::attribute_not_found_xml_exception&) {
            return otherwise;
        }
    }
};

class PartsListWriter : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;

    /// Whether the file is now this list; else it is what it was.
    bool save(const PartsList& list)
    {
        write(list);
        // All element writers have gone, so that nothing lacks its end tag.
        return commit();
    }

private:
    void write(const PartsList& list)
    {
        const auto root = writer().root_element("parts");
        root->attribute("version", "1");
        for (const Part& part : list) {
            const auto element = root->child("part");
            element->attribute("name", part.name.c_str());
            element->attribute("quantity", part.quantity.c_str());
            if (!part.note.empty())
                element->child("note")->text(part.note.c_str());
        }
    }
};

/// Closes the files that are no longer used. An application's event loop does that; this program
/// has none, and can't replace a file on Windows that it still has open.
void closeFiles()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::optional<PartsList> read(const QString& file)
{
    if (!QFileInfo::exists(file))
        return PartsList();
    std::optional<PartsList> list = PartsListReader(file.toStdWString()).read();
    closeFiles();
    return list;
}

void show(const PartsList& list)
{
    for (const Part& part : list) {
        std::cout << part.quantity << " x " << part.name;
        if (!part.note.empty())
            std::cout << " (" << part.note << ')';
        std::cout << '\n';
    }
}

constexpr char usage[] = "Usage: parts_list FILE [NAME QUANTITY [NOTE]]\n\n"
                         "Shows the list of parts in FILE, or adds a part to it.";

int fail(const char* message)
{
    std::cerr << message << '\n';
    return 1;
}

int run(const QStringList& arguments)
{
    if (arguments.contains(QStringLiteral("--help"))) {
        std::cout << usage << '\n';
        return 0;
    }
    if (arguments.size() != 2 && arguments.size() != 4 && arguments.size() != 5)
        return fail(usage);
    const QString& file = arguments[1];
    std::optional<PartsList> list = read(file);
    if (!list)
        return fail("This file is no list of parts");
    if (arguments.size() > 2) {
        list->push_back({arguments[2].toStdString(), arguments[3].toStdString(),
                         arguments.value(4).toStdString()});
        const bool saved = PartsListWriter(file.toStdWString()).save(*list);
        closeFiles();
        if (!saved)
            return fail("The list can't be saved");
    }
    show(*list);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        return run(QCoreApplication::arguments());
    } catch (const xml::attribute_not_found_xml_exception& error) {
        std::cerr << "A part has no " << error.what() << '\n';
        return 1;
    }
}
