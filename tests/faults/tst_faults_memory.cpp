// Where memory is short, values throw std::bad_alloc, lose nothing of it, and can be assigned to and
// destroyed afterwards.

#include "MemoryDrive.h"

#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvException.h>
#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvURI.h>
#include <zvutil/ZvUUID.h>
#include <zvutil/ZvVariant.h>
#include <zvutil/ZvWString.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/stop_source.h>
#include <zvutil/stop_token.h>
#include <zvutil/uri.h>
#include <zvutil/uuid.h>

#include "support/EventLoop.h"
#include "support/Files.h"

#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <string>
#include <utility>

using libzvutil::ZvString;
using libzvutil::ZvVariant;
using libzvutil::ZvWString;
using zvtest::MemoryCase;
using zvtest::ShortOfMemory;
using zvutil::ZvBasicString;
using zvutil::ZvFilePath;

namespace {

constexpr char longText[] = "a text that no small buffer holds, so that it needs memory";
constexpr wchar_t longWide[] =
    L"C:\\a text that no small buffer holds\\so that it needs memory.txt";

/// A value that is made under a fault, copied, assigned to and moved.
template <typename Value, typename Make>
const char* madeAndAssigned(ShortOfMemory& shortOfMemory, Make make)
{
    const Value other = make();
    shortOfMemory([&] { Value value = make(); });
    shortOfMemory([&] { Value copy(other); });
    Value assigned = make();
    shortOfMemory([&] { assigned = other; });
    assigned = other;
    Value taken(std::move(assigned));
    assigned = taken;
    return nullptr;
}

template <typename Text>
const char* sameText(const Text& a, const Text& b)
{
    return a == b ? nullptr : "a copy differs";
}

const char* narrowString(ShortOfMemory& shortOfMemory)
{
    return madeAndAssigned<ZvBasicString<char>>(shortOfMemory,
                                                [] { return ZvBasicString<char>(longText); });
}

const char* wideString(ShortOfMemory& shortOfMemory)
{
    return madeAndAssigned<ZvBasicString<wchar_t>>(shortOfMemory,
                                                   [] { return ZvBasicString<wchar_t>(longWide); });
}

const char* appendString(ShortOfMemory& shortOfMemory)
{
    const ZvBasicString<char> other(longText);
    ZvBasicString<char> text(longText);
    const bool isDone = shortOfMemory([&] { text.append(other); });
    if (text.toStdString() != (isDone ? std::string(longText) + longText : longText))
        return "the text is neither the old nor the new";
    shortOfMemory([&] { text.appended(other); });
    text = other;
    return sameText(text, other);
}

const char* convertString(ShortOfMemory& shortOfMemory)
{
    const ZvBasicString<wchar_t> wide(longWide);
    const ZvBasicString<char16_t> utf16 = wide.toU16String();
    shortOfMemory([&] { wide.toString(); });
    shortOfMemory([&] { wide.toU16String(); });
    shortOfMemory([&] { wide.toU32String(); });
    shortOfMemory([&] { utf16.toWString(); });
    shortOfMemory([&] { utf16.toStringType(); });
    shortOfMemory([&] { utf16.toStdString(); });
    return nullptr;
}

const char* zvString(ShortOfMemory& shortOfMemory)
{
    const QString qText = QString::fromLatin1(longText);
    ZvString text(longText);
    shortOfMemory([&] { text += longText; });
    shortOfMemory([&] { text += qText; });
    shortOfMemory([&] { text += ZvString(longText); });
    shortOfMemory([&] { text.resize(200); });
    shortOfMemory([&] { text.toQString(); });
    shortOfMemory([&] { text.compare(longText); });
    return madeAndAssigned<ZvString>(shortOfMemory, [] { return ZvString(longText); });
}

const char* zvWString(ShortOfMemory& shortOfMemory)
{
    const QString qText = QString::fromLatin1(longText);
    ZvWString text(longWide);
    shortOfMemory([&] { text += longWide; });
    shortOfMemory([&] { text += qText; });
    shortOfMemory([&] { text += L'x'; });
    shortOfMemory([&] { text.resize(200); });
    shortOfMemory([&] { const ZvWString copy(text); });
    return nullptr;
}

const char* variant(ShortOfMemory& shortOfMemory)
{
    const QVariant value = QString::fromLatin1(longText);
    ZvVariant changed(1);
    shortOfMemory([&] { changed = value; });
    shortOfMemory([&] { const ZvVariant wide{std::wstring(longWide)}; });
    return madeAndAssigned<ZvVariant>(shortOfMemory, [] { return ZvVariant(longText); });
}

const char* path(ShortOfMemory& shortOfMemory)
{
    const ZvFilePath file(longWide);
    ZvFilePath changed(longWide);
    shortOfMemory([&] { changed /= file; });
    shortOfMemory([&] { changed.makePreferred(); });
    shortOfMemory([&] { file.extension(); });
    shortOfMemory([&] { file.toQString(); });
    shortOfMemory([&] { file.toStdFilePath(); });
    shortOfMemory([&] { static_cast<void>(file.isDescendant(changed)); });
    shortOfMemory([&] { const ZvFilePath narrow(longText); });
    shortOfMemory([&] { static_cast<void>(file.isSchematicFile()); });
    changed = file;
    return changed == file
        ? madeAndAssigned<ZvFilePath>(shortOfMemory, [] { return ZvFilePath(longWide); })
        : "a copy differs";
}

const char* uri(ShortOfMemory& shortOfMemory)
{
    constexpr char text[] = "http://user@a.server.somewhere:80/a/path that is long?query#fragment";
    shortOfMemory([&] { const zvutil::uri parsed(text); });
    shortOfMemory(
        [&] { const zvutil::uri parsed(std::filesystem::path("/a/b c d e f g h i j k")); });
    ZvURI changed("http://a");
    shortOfMemory([&] { changed.set(text); });
    shortOfMemory([&] { changed.set(ZvFilePath(longWide)); });
    shortOfMemory([&] { changed.toString(); });
    shortOfMemory([&] { changed.toURI(); });
    return madeAndAssigned<ZvURI>(shortOfMemory, [&text] { return ZvURI(text); });
}

const char* identifier(ShortOfMemory& shortOfMemory)
{
    shortOfMemory([] { const zvutil::uuid id; });
    shortOfMemory([] { zvutil::ZvUUID().toString(); });
    shortOfMemory([] { zvutil::ZvUUID().toUUID(); });
    return madeAndAssigned<zvutil::ZvUUID>(shortOfMemory, [] { return zvutil::ZvUUID(longText); });
}

const char* table(ShortOfMemory& shortOfMemory)
{
    shortOfMemory([] { const ZvTable table(3, 4, ZvVariant(longText)); });
    ZvTable table(2, 2, ZvVariant(longText));
    table.value(0, 1) = QVariant(1.5);
    shortOfMemory([&] { const ZvTable copy(table); });
    shortOfMemory([&] { table.toCSV(); });
    shortOfMemory([&] { table.toTSV(); });
    shortOfMemory([&] { table.value(1, 1) = ZvVariant(longText); });
    table.value(1, 1) = ZvVariant(1);
    return table.value(1, 1).data() == QVariant(1) ? nullptr : "a cell can't be assigned to";
}

const char* exceptions(ShortOfMemory& shortOfMemory)
{
    shortOfMemory([] { const zvutil::ZvException exception{ZvBasicString<char>(longText)}; });
    shortOfMemory([] { const zvutil::ZvFileException exception{ZvFilePath(longWide)}; });
    return madeAndAssigned<zvutil::ZvException>(
        shortOfMemory, [] { return zvutil::ZvException{ZvBasicString<char>(longText)}; });
}

const char* stopping(ShortOfMemory& shortOfMemory)
{
    shortOfMemory([] { zvutil::stop_source source; });
    return nullptr;
}

template <typename C>
class Writer : public ZvBasicXMLSaveFile<C>
{
public:
    using ZvBasicXMLSaveFile<C>::writer;
    using ZvBasicXMLSaveFile<C>::ZvBasicXMLSaveFile;
};

class Reader : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::reader;
    using ZvXMLReadFile::ZvXMLReadFile;
};

QString xmlFile()
{
    static const QTemporaryDir folder;
    return folder.filePath("a.xml");
}

template <typename C>
const char* writeXml(ShortOfMemory& shortOfMemory)
{
    if (!zvtest::writeTo(xmlFile(), "old"))
        return "no file";
    const std::basic_string<C> text(longText, longText + sizeof(longText) - 1);
    const C name[] = {C('n'), C(0)};
    bool isSaved = false;
    shortOfMemory([&] {
        Writer<C> file(xmlFile().toStdWString());
        {
            const auto root = file.writer().root_element(name);
            root->attribute(name, text.c_str());
            root->child(name)->text(text.c_str());
        }
        isSaved = file.commit();
    });
    zvtest::runEventLoop();
    static const QByteArray whole = zvtest::contentOf(xmlFile());
    const QByteArray content = zvtest::contentOf(xmlFile());
    return isSaved ? (content == whole ? nullptr : "told as saved, but not whole")
                   : (content == "old" ? nullptr : "told as failed, but changed");
}

const char* readXml(ShortOfMemory& shortOfMemory)
{
    if (!zvtest::writeTo(xmlFile(),
                         QByteArray("<root a='") + longText + "'><child>" + QByteArray(longText)
                             + "</child><child/></root>"))
        return "no file";
    shortOfMemory([] {
        Reader file(xmlFile().toStdWString());
        const auto root = file.reader().root_element();
        if (!root)
            return;
        static_cast<void>(root->attribute("a"));
        while (const auto child = root->next_child())
            static_cast<void>(child->text());
    });
    zvtest::runEventLoop();
    return nullptr;
}

} // namespace

class tst_faults_memory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { zvtest::Tally::print(); }

    void eachAllocation_data()
    {
        QTest::addColumn<MemoryCase>("work");
        QTest::addColumn<bool>("losesInQt");
        QTest::newRow("narrow string") << MemoryCase(&narrowString) << false;
        QTest::newRow("wide string") << MemoryCase(&wideString) << false;
        QTest::newRow("appended string") << MemoryCase(&appendString) << false;
        QTest::newRow("converted string") << MemoryCase(&convertString) << false;
        QTest::newRow("ZvString") << MemoryCase(&zvString) << false;
        QTest::newRow("ZvWString") << MemoryCase(&zvWString) << false;
        QTest::newRow("ZvVariant") << MemoryCase(&variant) << false;
        QTest::newRow("ZvFilePath") << MemoryCase(&path) << false;
        QTest::newRow("uri") << MemoryCase(&uri) << false;
        QTest::newRow("identifier") << MemoryCase(&identifier) << false;
        QTest::newRow("table") << MemoryCase(&table) << false;
        QTest::newRow("exceptions") << MemoryCase(&exceptions) << false;
        QTest::newRow("stop source") << MemoryCase(&stopping) << false;
        QTest::newRow("XML in UTF-8") << MemoryCase(&writeXml<char>) << true;
        QTest::newRow("XML in UTF-16") << MemoryCase(&writeXml<char16_t>) << true;
        QTest::newRow("XML in UTF-32") << MemoryCase(&writeXml<char32_t>) << true;
        QTest::newRow("XML read") << MemoryCase(&readXml) << true;
    }

    void eachAllocation()
    {
        QFETCH(MemoryCase, work);
        QFETCH(bool, losesInQt);
        const QString problem =
            zvtest::driveMemory(work, losesInQt ? zvtest::Losses::InQt : zvtest::Losses::None);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
};

QTEST_GUILESS_MAIN(tst_faults_memory)
#include "tst_faults_memory.moc"
