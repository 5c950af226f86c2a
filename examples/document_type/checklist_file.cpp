#include "checklist_file.h"

#include <zvworkbench/FileError.h>

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

#include <QFile>

#include <string>

using workbench::FileError;
using zvutil::experimental::xml::attribute_not_found_xml_exception;

namespace {

class ChecklistReader : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::ZvXMLReadFile;

    Checklist read()
    {
        const auto root = reader().root_element();
        if (!root || std::string(root->name()) != "checklist")
            throw FileError("The file is not a checklist.");
        Checklist checklist;
        while (const auto point = root->next_child())
            checklist.append({QString::fromUtf8(point->attribute("text")),
                              std::string(point->attribute("done")) == "true"});
        // A reader doesn't notice that a file breaks off, so the number of points is in there.
        if (QString::number(checklist.size()) != QString::fromUtf8(root->attribute("points")))
            throw FileError("The file is damaged: points are missing.");
        return checklist;
    }
};

class ChecklistWriter : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;

    bool save(const Checklist& checklist)
    {
        write(checklist);
        // All element writers are destroyed by now, so each has written its end tag.
        return commit();
    }

private:
    void write(const Checklist& checklist)
    {
        const auto root = writer().root_element("checklist");
        root->attribute("points", std::to_string(checklist.size()).c_str());
        for (const ChecklistPoint& point : checklist) {
            const auto element = root->child("point");
            element->attribute("text", point.text.toUtf8().constData());
            element->attribute("done", point.isDone ? "true" : "false");
        }
    }
};

} // namespace

Checklist readChecklist(const zvutil::ZvFilePath& file)
{
    QFile content(file.toQString());
    // A file that can't be read isn't empty: saving the empty document would lose it.
    const bool isEmpty = content.open(QIODevice::ReadOnly) && content.peek(1).isEmpty();
    if (content.error() != QFileDevice::NoError)
        throw FileError(content.errorString());
    content.close();
    if (isEmpty)
        return {};
    try {
        return ChecklistReader(file).read();
    } catch (const attribute_not_found_xml_exception& error) {
        throw FileError(
            QString("The file is damaged: the attribute “%1” is missing.").arg(error.what()));
    }
}

void saveChecklist(const Checklist& checklist, const zvutil::ZvFilePath& file)
{
    if (!ChecklistWriter(file).save(checklist))
        throw FileError("The file can't be written. The disk may be full.");
}
