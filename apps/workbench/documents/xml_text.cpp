#include "documents/xml_text.h"

#include "common/path_names.h"
#include "documents/file_in_use.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <string_view>

namespace workbench {

namespace {

constexpr int maxVersion = 1;
// A name on disk has at most 255 units. Where the disk can't hold unnamed files, a file has a dot
// and six letters more in its name while it is written.
constexpr int maxNameLengthToSave = 255 - 7;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(workbench::XmlText)
};

bool isWritable(QChar unit)
{
    const ushort code = unit.unicode();
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xFFFD);
}

/// Returns the length in the units that the disk counts: bytes on Unix, UTF-16 units elsewhere.
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
        throw FileError(Texts::tr("Element “%1” has no attribute “%2”.")
                            .arg(QString::fromUtf8(element.name()), QString::fromUtf8(name)));
    }
}

int numberAttribute(const XmlElement& element, const char* name, int min, int max)
{
    const QString text = textAttribute(element, name);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < min || number > max)
        throw FileError(
            Texts::tr(
                "Attribute “%2” of element “%1” is “%3”; expected a whole number from %4 to %5.")
                .arg(QString::fromUtf8(element.name()), QString::fromUtf8(name), text.left(40),
                     QString::number(min), QString::number(max)));
    return number;
}

void requireRoot(const XmlElement* root, const char* name, const QString& what)
{
    if (!root)
        throw FileError(Texts::tr("This is not an XML file."));
    if (!isElement(root, name))
        throw FileError(Texts::tr("This is not a %1 (root element “%2”).")
                            .arg(what, QString::fromUtf8(root->name())));
    const QString version = textAttribute(*root, "version");
    bool isNumber = false;
    const int number = version.toInt(&isNumber);
    if (!isNumber || number < 1)
        throw FileError(Texts::tr("Invalid format version “%1”.").arg(version.left(40)));
    if (number > maxVersion)
        throw FileError(Texts::tr("The file was written by a newer version of this program (format "
                                  "version %1; this program reads up to version %2).")
                            .arg(number)
                            .arg(maxVersion));
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
    const int index = unwritableCharacter(text);
    if (index < 0)
        return;
    const QString code = QString::number(text.at(index).unicode(), 16).rightJustified(4, u'0');
    // The place contains the user's own text, which may hold a "%2", so one call replaces all
    // markers.
    throw FileError(
        Texts::tr("%1 contains a character that XML does not allow: U+%2 at position %3.")
            .arg(where(), code, QString::number(index + 1)));
}

void requireWritten(bool isWritten, const zvutil::ZvFilePath& file)
{
    if (isWritten)
        return;
    const QFileInfo info(qtFileName(file));
    const QFileInfo folder(info.path());
    if (!folder.isDir())
        throw FileError(Texts::tr("The folder “%1” does not exist.")
                            .arg(QDir::toNativeSeparators(folder.filePath())));
    if (info.isDir())
        throw FileError(Texts::tr("There is a folder of this name."));
    if (lengthOnDisk(info.fileName()) > maxNameLengthToSave)
        throw FileError(Texts::tr("The file name is too long for this disk."));
    if (isInUse(file))
        throw FileError(Texts::tr("The file is open in another program."));
    throw FileError(Texts::tr("The disk is full, or you do not have permission to write there."));
}

} // namespace workbench
