#include "documents/XmlText.h"

#include "common/path_names.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <string_view>

namespace workbench {

namespace {

constexpr int newestVersion = 1;
// A disk takes 255. Where it knows no files without names, one has a dot and six letters more while
// it is written.
constexpr int longestNameToSave = 255 - 7;

QString tr(const char* text)
{
    return QCoreApplication::translate("workbench::XmlText", text);
}

bool isWritable(QChar unit)
{
    const ushort code = unit.unicode();
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xFFFD);
}

/// In what the disk counts.
int lengthOnDisk(const QString& name)
{
#ifdef Q_OS_UNIX
    return QFile::encodeName(name).size();
#else
    return name.size();
#endif
}

} // namespace

bool isElement(const XmlElement* element, const char* name)
{
    return element && std::string_view(element->name()) == name;
}

QString textAttribute(const XmlElement& element, const char* name)
{
    try {
        return QString::fromUtf8(element.attribute(name));
    } catch (const zvutil::experimental::xml::attribute_not_found_xml_exception&) {
        throw FileError(tr("An element “%1” in it has no “%2”.")
                            .arg(QString::fromUtf8(element.name()), QString::fromUtf8(name)));
    }
}

int numberAttribute(const XmlElement& element, const char* name, int least, int most)
{
    const QString text = textAttribute(element, name);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw FileError(
            tr("In an element “%1” of it, “%2” is “%3”; it should be a whole number from "
               "%4 to %5.")
                .arg(QString::fromUtf8(element.name()), QString::fromUtf8(name), text.left(40),
                     QString::number(least), QString::number(most)));
    return number;
}

void requireRoot(const XmlElement* root, const char* name, const QString& what)
{
    if (!root)
        throw FileError(tr("It is no XML file."));
    if (!isElement(root, name))
        throw FileError(
            tr("It is no %1: it holds “%2”.").arg(what, QString::fromUtf8(root->name())));
    const QString version = textAttribute(*root, "version");
    bool isNumber = false;
    const int number = version.toInt(&isNumber);
    if (!isNumber || number < 1)
        throw FileError(tr("Its version is “%1”, which is none.").arg(version.left(40)));
    if (number > newestVersion)
        throw FileError(tr("It was written by a newer version of this program (version %1 of the "
                           "format; this one knows version %2).")
                            .arg(number)
                            .arg(newestVersion));
}

int unwritableCharacter(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (text.at(i).isSurrogate() || !isWritable(text.at(i)))
            return i;
    }
    return -1;
}

void requireWritable(const QString& text, const std::function<QString()>& where)
{
    const int place = unwritableCharacter(text);
    if (place < 0)
        return;
    const QString code = QString::number(text.at(place).unicode(), 16).rightJustified(4, u'0');
    // All at once: where it is, the user has written, and that may hold a "%2".
    throw FileError(tr("%1 holds a character that an XML file can't hold: U+%2 at position %3.")
                        .arg(where(), code, QString::number(place + 1)));
}

void requireWritten(bool isWritten, const zvutil::ZvFilePath& file)
{
    if (isWritten)
        return;
    const QFileInfo info(qtFileName(file));
    const QFileInfo folder(info.path());
    if (!folder.isDir())
        throw FileError(tr("There is no folder “%1”.").arg(folder.filePath()));
    if (info.isDir())
        throw FileError(tr("A folder has this name."));
    if (lengthOnDisk(info.fileName()) > longestNameToSave)
        throw FileError(tr("Its name is too long for this disk."));
    throw FileError(tr("Either the disk is full, or you have no right to write there."));
}

} // namespace workbench
