// Taking file paths apart and putting them together.

#include "FilePathTexts.h"

#include <zvutil/ZvFilePath.h>

#include <QTest>

#include <string>

using zvtest::path;
using zvtest::text;
using zvtest::utf8;
using zvutil::ZvFilePath;
using namespace std::string_literals;

class tst_ZvFilePath_parts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appends_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("added");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* p, const char* q, const char* expected) {
            QTest::addRow("%s /= %s", p, q) << utf8(p) << utf8(q) << utf8(expected);
        };
        row("", "", "");
        row("", "a", "a");
        row("a", "", "a\\");
        row("a\\", "", "a\\");
        row("a/", "", "a/");
        row("a", "b", "a\\b");
        row("a/", "b", "a/b");
        row("a/b", "c/d", "a/b\\c/d");
        row("C:", "x", "C:x");
        row("C:", "", "C:");
        row("C:\\", "x", "C:\\x");
        row("C:\\", "", "C:\\");
        row("a", "C:\\x", "C:\\x");
        row("C:\\a", "\\b", "C:\\b");
        row("C:\\a", "/b", "C:/b");
        row("C:a", "\\b", "C:\\b");
        row("C:\\a", "D:b", "D:b");
        row("C:\\a", "D:", "D:");
        row("C:a", "C:b", "C:a\\b");
        row("C:\\a", "C:b", "C:\\a\\b");
        row("C:a", "c:b", "c:b");
        row("C:\\a", "C:\\b", "C:\\b");
        row("a", "C:b", "C:b");
        row("\\a", "\\b", "\\b");
        row("a", "\\", "\\");
        row("\\\\srv", "x", "\\\\srv\\x");
        row("\\\\srv", "", "\\\\srv\\");
        row("\\\\srv\\a", "\\b", "\\\\srv\\b");
        row("\\\\srv\\a", "\\\\srv\\b", "\\\\srv\\b");
        row("a", "\\\\srv\\b", "\\\\srv\\b");
        row("\\\\?", "x", "\\\\?\\x");
        row("a", "\\\\?\\C:\\x", "\\\\?\\C:\\x");
        row("a", "..", "a\\..");
        row("a", ".", "a\\.");
        row("a", "\\\\", "\\\\");
    }

    void appends()
    {
        QFETCH(QString, path);
        QFETCH(QString, added);
        QFETCH(QString, expected);
        ZvFilePath p = ::path(path);
        QCOMPARE(&(p /= ::path(added)), &p);
        QCOMPARE(text(p), expected);
    }

    void appendsItself_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << utf8("") << utf8("");
        QTest::newRow("absolute") << utf8("C:\\a") << utf8("C:\\a");
        QTest::newRow("relative") << utf8("a") << utf8("a\\a");
        QTest::newRow("directory") << utf8("a\\") << utf8("a\\a\\");
        QTest::newRow("drive") << utf8("C:a") << utf8("C:a\\a");
        QTest::newRow("root directory") << utf8("\\a") << utf8("\\a");
        QTest::newRow("long") << QString(1000, QLatin1Char('a'))
                              << QString(1000, QLatin1Char('a')) + QLatin1Char('\\')
                + QString(1000, QLatin1Char('a'));
    }

    void appendsItself()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        ZvFilePath p = ::path(path);
        const ZvFilePath& same = p;
        p /= same;
        QCOMPARE(text(p), expected);
    }

    void splits_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("filename");
        QTest::addColumn<QString>("extension");
        const auto row = [](const char* p, const char* parent, const char* name,
                            const char* extension) {
            QTest::newRow(*p ? p : "empty")
                << utf8(p) << utf8(parent) << utf8(name) << utf8(extension);
        };
        row("", "", "", "");
        row("abc", "", "abc", "");
        row("a\\b\\c", "a\\b", "c", "");
        row("a/b/c", "a/b", "c", "");
        row("a\\b\\", "a\\b", "", "");
        row("a\\\\b", "a", "b", "");
        row("a\\b//", "a\\b", "", "");
        row("a\\", "a", "", "");
        row("C:\\", "C:\\", "", "");
        row("C:", "C:", "", "");
        row("C:x", "C:", "x", "");
        row("C:\\a", "C:\\", "a", "");
        row("C:\\\\a", "C:\\\\", "a", "");
        row("C:\\a\\b", "C:\\a", "b", "");
        row("\\", "\\", "", "");
        row("\\a", "\\", "a", "");
        row("\\\\srv", "\\\\srv", "", "");
        row("\\\\srv\\", "\\\\srv\\", "", "");
        row("\\\\srv\\x", "\\\\srv\\", "x", "");
        row("\\\\srv\\x\\y", "\\\\srv\\x", "y", "");
        row("//srv/x", "//srv/", "x", "");
        row("\\\\?\\C:\\x", "\\\\?\\C:", "x", "");
        row("\\\\.\\pipe", "\\\\.\\", "pipe", "");
        row("\\??\\x", "\\??\\", "x", "");
        row("1:\\x", "1:", "x", "");
        row("\\??\\", "\\??\\", "", "");
        row("\\??\\\\", "\\??", "", "");
        row("\\a?\\x", "\\a?", "x", "");
        row("\\?a\\x", "\\?a", "x", "");
        row("\\\\s", "\\\\s", "", "");
        row("\\\\s\\x", "\\\\s\\", "x", "");
        row("\\\\\\x", "\\\\\\", "x", "");
        row("\\??\\\\x", "\\??", "x", "");
        row("\\\\??", "\\\\??", "", "");
        row("\\\\.\\", "\\\\.\\", "", "");
        row("\\/?/x", "\\/?/", "x", "");

        // Drives are the letters of ASCII.
        row("a:x", "a:", "x", "");
        row("z:x", "z:", "x", "");
        row("A:x", "A:", "x", "");
        row("Z:x", "Z:", "x", "");
        row("@:x", "", "@:x", "");
        row("[:x", "", "[:x", "");
        row("`:x", "", "`:x", "");
        row("{:x", "", "{:x", "");
        row("ä:x", "", "ä:x", "");
        row("ab:x", "", "ab:x", "");

        row(".", "", ".", "");
        row("..", "", "..", "");
        row("...", "", "...", ".");
        row("..a", "", "..a", ".a");
        row("a..", "", "a..", ".");
        row("name.", "", "name.", ".");
        row("a.", "", "a.", ".");
        row(".a", "", ".a", "");
        row(".profile", "", ".profile", "");
        row(".a.b", "", ".a.b", ".b");
        row("x.tar.gz", "", "x.tar.gz", ".gz");
        row("x.ZVSCH", "", "x.ZVSCH", ".ZVSCH");
        row("a.txt:s", "", "a.txt:s", ".txt");
        row("a.txt:s.t", "", "a.txt:s.t", ".txt");
        row("a:s.t", "a:", "s.t", ".t");
        row("ab:s.t", "", "ab:s.t", "");
        row("..:x", "", "..:x", "");
        row("dir.d\\a", "dir.d", "a", "");
        row("dir.d\\", "dir.d", "", "");
        row("a\\.b", "a", ".b", "");
        row("a.b c", "", "a.b c", ".b c");
        row("ä.€", "", "ä.€", ".€");
    }

    void splits()
    {
        QFETCH(QString, path);
        QFETCH(QString, parent);
        QFETCH(QString, filename);
        QFETCH(QString, extension);
        const ZvFilePath p = ::path(path);
        QCOMPARE(text(p.parentPath()), parent);
        QCOMPARE(text(p.filename()), filename);
        QCOMPARE(text(p.extension()), extension);
        QCOMPARE(text(p), path);
    }

    void relates_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* p, const char* base, const char* expected) {
            QTest::addRow("%s from %s", p, base) << utf8(p) << utf8(base) << utf8(expected);
        };
        row("a\\b\\c", "a\\b", "c");
        row("a\\b", "a\\b\\c", "..");
        row("a\\b", "a\\c", "..\\b");
        row("a\\b", "a\\b", ".");
        row("a/b", "a\\b", ".");
        row("", "", ".");
        row("a", "", "a");
        row("", "a", "..");
        row("a\\b\\", "a\\b", ".");
        row("a\\b", "a\\b\\", ".");
        row("C:\\a\\b", "C:\\a", "b");
        row("C:\\a", "C:\\b\\c", "..\\..\\a");
        row("C:\\a", "C:/a", ".");
        row("C:\\a", "C:\\", "a");
        row("C:\\", "C:\\a", "..");
        row("C:a", "C:b", "..\\a");

        row("C:\\a", "D:\\a", "");
        row("C:\\a", "c:\\a", "");
        row("C:\\a", "a", "");
        row("a", "C:\\a", "");
        row("C:\\a", "C:a", "");
        row("C:a", "C:\\a", "");
        row("a", "\\a", "");
        row("\\a", "a", "\\a");
        row("\\\\srv\\a", "//srv/a", "");
        row("\\\\srv\\a\\b", "\\\\srv\\a", "b");
        row("x\\C:\\a", "x", "");
        row("x", "x\\C:", "");
        row("x\\b\\C:\\a", "x", "");
        row("x\\b\\cd:e\\f", "x", "b\\cd:e\\f");
        row("C:\\D:", "C:\\", "D:");

        row("a", ".", "a");
        row("a", ".\\", "a");
        row("a", "..", "");
        row("a", "b\\..", "a");
        row("a", "b\\..\\..", "");
        row("a\\x", "a\\.\\b\\.", "..\\x");
        row("a\\", "a\\.", ".");
        row("a\\..\\b", "a", "..\\b");
        row("A\\b", "a\\b", "..\\..\\A\\b");
    }

    void relates()
    {
        QFETCH(QString, path);
        QFETCH(QString, base);
        QFETCH(QString, expected);
        QCOMPARE(text(::path(path).lexicallyRelative(::path(base))), expected);
    }

    void descendants_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char* directory, const char* p, bool expected) {
            QTest::addRow("%s below %s", p, directory) << utf8(directory) << utf8(p) << expected;
        };
        row("C:\\a\\", "C:\\a\\b", true);
        row("C:\\a\\", "C:\\a\\b\\c", true);
        row("C:\\a\\", "C:/a/b", false);
        row("C:\\A\\", "C:\\a\\b", false);
        row("C:\\a", "C:\\a\\b", false);
        row("C:\\a\\", "C:\\a\\", false);
        row("C:\\a\\", "C:\\a", false);
        row("C:\\a\\", "C:\\ab", false);
        row("", "a", true);
        row("", "", false);
        row("C:", "C:a", true);
        row("C:", "C:\\a", true);
        row("C:\\", "C:\\a", true);
        row("\\\\srv", "\\\\srv\\a", true);
        row("\\\\srv", "\\\\srvx\\a", true);
        row("a/", "a/b", true);
        row("a\\\\", "a\\b", false);
    }

    void descendants()
    {
        QFETCH(QString, directory);
        QFETCH(QString, path);
        QFETCH(bool, expected);
        QCOMPARE(::path(directory).isDescendant(::path(path)), expected);
    }

    void makePreferred_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing to do") << utf8("a\\b") << utf8("a\\b");
        QTest::newRow("slashes") << utf8("a/b//c/") << utf8("a\\b\\\\c\\");
        QTest::newRow("in the root name") << utf8("//srv/x") << utf8("\\\\srv\\x");
        QTest::newRow("empty") << utf8("") << utf8("");
    }

    void makePreferred()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        ZvFilePath p = ::path(path);
        QCOMPARE(&p.makePreferred(), &p);
        QCOMPARE(text(p), expected);
    }
};

QTEST_GUILESS_MAIN(tst_ZvFilePath_parts)
#include "tst_ZvFilePath_parts.moc"
