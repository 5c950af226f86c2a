// File paths of directories, of the standard places and by what they name.

#include "FilePathTexts.h"

#include <zvutil/ZvFilePath.h>

#include "support/StdString.h"

#include <HostSupport/host.h>

#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <string>
#include <string_view>

using zvtest::failure;
using zvtest::path;
using zvtest::text;
using zvtest::utf8;
using zvutil::StandardPath;
using zvutil::ZvFilePath;
using namespace std::string_literals;
using namespace std::string_view_literals;

class tst_ZvFilePath_places : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void directoryForm_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* t, const char* expected) {
            QTest::newRow(*t ? t : "empty") << utf8(t) << utf8(expected);
        };
        row("a", "a\\");
        row("a\\", "a\\");
        row("a/", "a/");
        row("", "");
        row("C:", "C:");
        row("C:\\", "C:\\");
        row("a/b", "a/b\\");
        row("\\\\srv", "\\\\srv\\");
        row("C:\\a", "C:\\a\\");
        QTest::newRow("ends at NUL") << QString::fromLatin1("a\0b", 3) << utf8("a\\");
        QTest::newRow("begins with NUL") << QString::fromLatin1("\0b", 2) << QString();
    }

    void directoryForm()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const std::string narrow = text.toStdString();
        const std::wstring wide = text.toStdWString();
        QCOMPARE(::text(ZvFilePath::Directory(narrow.c_str())), expected);
        QCOMPARE(::text(ZvFilePath::Directory(narrow)), expected);
        QCOMPARE(::text(ZvFilePath::Directory(wide.c_str())), expected);
        QCOMPARE(::text(ZvFilePath::Directory(wide)), expected);
        QCOMPARE(::text(ZvFilePath::Directory(std::filesystem::path(narrow))), expected);
    }

    void standardPaths_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, StandardPath value, const char* symbol,
                            const char* answer, const char* expected) {
            QTest::newRow(name) << int(value) << utf8(symbol) << utf8(answer) << utf8(expected);
        };
        row("application data", StandardPath::AppData, "ZVAPPDATAPATH", "c:/x/y", "c:\\x\\y");
        row("documents", StandardPath::Documents, "ZVDOCSPATH", "C:\\docs", "C:\\docs");
        row("a separator at the end stays", StandardPath::Documents, "ZVDOCSPATH", "c:/x/",
            "c:\\x\\");
        row("no separator is added", StandardPath::AppData, "ZVAPPDATAPATH",
            "/home/u/.local/share/x", "\\home\\u\\.local\\share\\x");
        row("not ASCII", StandardPath::AppData, "ZVAPPDATAPATH", "C:/ä/€", "C:\\ä\\€");
        row("empty answer", StandardPath::AppData, "ZVAPPDATAPATH", "", "");
        row("common data", StandardPath::CommonAppData, "COMMON_APPDATAPATH", "C:/ProgramData",
            "C:\\ProgramData\\Corvane Technologies\\Prö/dukt");
        row("common data, separator at the end", StandardPath::CommonAppData, "COMMON_APPDATAPATH",
            "C:/ProgramData/", "C:\\ProgramData\\Corvane Technologies\\Prö/dukt");
        row("common data, empty answer", StandardPath::CommonAppData, "COMMON_APPDATAPATH", "",
            "Corvane Technologies\\Prö/dukt");
    }

    void standardPaths()
    {
        QFETCH(int, value);
        QFETCH(QString, symbol);
        QFETCH(QString, answer);
        QFETCH(QString, expected);
        host::setPathSymbol(symbol.toStdString(), answer.toStdString());
        host::setProductFolderName("Prö/dukt");
        const auto standardPath = StandardPath(value);
        QCOMPARE(text(ZvFilePath::Path(standardPath)), expected.replace(u'/', u'\\'));
        QCOMPARE(text(ZvFilePath::Directory(standardPath)), expected);
    }

    void directoryOfAViewEndsAtItsNul()
    {
        // As a path of the standard library, which a constructor doesn't make of it.
        QCOMPARE(::text(ZvFilePath::Directory("a\0b"sv)), utf8("a\\"));
        QCOMPARE(::text(ZvFilePath::Directory(L"a\0b"sv)), utf8("a\\"));
        QCOMPARE(ZvFilePath("a\0b"sv).size(), std::size_t(3));
        ZvFilePath whole("a\0b"sv);
        whole /= ZvFilePath();
        QCOMPARE(whole.size(), std::size_t(4));
    }

    void otherStandardPathsAreEmpty()
    {
        QVERIFY(ZvFilePath::Path(StandardPath(3)).isEmpty());
        QVERIFY(ZvFilePath::Path(StandardPath(-1)).isEmpty());
        QVERIFY(ZvFilePath::Directory(StandardPath(3)).isEmpty());
    }

    void standardPathThatIsNotUtf8IsRefused()
    {
        host::setPathSymbol("ZVDOCSPATH", "C:/\xFF");
        QVERIFY(failure([] { (void)ZvFilePath::Path(StandardPath::Documents); }));
    }

    void standardPathOpensItsDirectory()
    {
        const QTemporaryDir directory;
        host::setPathSymbol("ZVAPPDATAPATH", directory.path().toStdString());
        ZvFilePath p = ZvFilePath::Path(StandardPath::AppData);
        QVERIFY(!text(p).contains(u'/'));
        QVERIFY(std::filesystem::is_directory(p.toStdFilePath()));
    }

    void fileKinds_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isSchematic");
        QTest::addColumn<bool>("isScript");
        const auto row = [](const char* p, bool isSchematic, bool isScript) {
            QTest::newRow(*p ? p : "empty") << utf8(p) << isSchematic << isScript;
        };
        row("a.zvsch", true, false);
        row("C:\\x\\a.zvsch", true, false);
        row("a.zvscr", false, true);
        row("a.ZVSCH", false, false);
        row("a.zvSCR", false, false);
        row("a.zvsch:x", true, false);
        row("a.zvscr:x", false, true);
        row(".zvsch", false, false);
        row(".zvscr", false, false);
        row("a.zvsch.bak", false, false);
        row("a.b.zvscr", false, true);
        row("a.zvsch\\", false, false);
        row("zvsch", false, false);
        row("a.zvschx", false, false);
        row("", false, false);
        // The extension ends at a NUL, so this one has it.
        QTest::newRow("NUL in the extension")
            << utf8("a.zvsch") + QChar(u'\0') + utf8("x") << true << false;
        QTest::newRow("NUL at the end") << utf8("a.zvscr") + QChar(u'\0') << false << true;
        QTest::newRow("NUL in front of the dot")
            << utf8("a") + QChar(u'\0') + utf8(".zvsch") << true << false;
        QTest::newRow("NUL within the extension's name")
            << utf8("a.zv") + QChar(u'\0') + utf8("sch") << false << false;
    }

    void fileKinds()
    {
        QFETCH(QString, path);
        QFETCH(bool, isSchematic);
        QFETCH(bool, isScript);
        QCOMPARE(::path(path).isSchematicFile(), isSchematic);
        QCOMPARE(::path(path).isScriptFile(), isScript);
    }
};

QTEST_GUILESS_MAIN(tst_ZvFilePath_places)
#include "tst_ZvFilePath_places.moc"
