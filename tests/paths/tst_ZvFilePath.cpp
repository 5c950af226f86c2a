#include <zvutil/ZvFilePath.h>

#include "support/StdString.h"
#include "support/Threads.h"

#include <HostSupport/YString.h>
#include <HostSupport/host.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

using zvutil::StandardPath;
using zvutil::ZvBasicString;
using zvutil::ZvFilePath;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

ZvFilePath path(const QString& text)
{
    // Unit by unit, so that unpaired surrogates stay.
    const std::wstring wide(text.utf16(), text.utf16() + text.size());
    return {wide.data(), wide.size()};
}

QString text(const ZvFilePath& p)
{
    return p.toQString();
}

QString text(const ZvBasicString<wchar_t>& t)
{
    return QString::fromStdWString(t.toStringType());
}

QString utf8(const char* t)
{
    return QString::fromUtf8(t);
}

#if defined(Q_OS_WIN)
QString decoded(const QByteArray& bytes, UINT codePage)
{
    wchar_t units[16];
    const int size = MultiByteToWideChar(codePage, 0, bytes.constData(), bytes.size(), units, 16);
    return QString::fromWCharArray(units, size);
}
#endif

/// The code that \p make fails with.
std::error_code failure(const std::function<void()>& make)
{
    try {
        make();
    } catch (const std::system_error& error) {
        return error.code();
    }
    return {};
}

std::error_code invalidArgument()
{
    return {EINVAL, std::generic_category()};
}

template <typename Left, typename Right = Left, typename = void>
constexpr bool hasOtherOrder = false;

template <typename Left, typename Right>
constexpr bool hasOtherOrder<Left, Right,
                             std::void_t<decltype(std::declval<Left>() > std::declval<Right>())>> =
    true;

static_assert(hasOtherOrder<int> && !hasOtherOrder<ZvFilePath>);

/// The size of the long texts that every constructor has to take.
constexpr std::size_t longSize = 100'000'000;

static_assert(sizeof(ZvFilePath) == 2 * sizeof(void*));
static_assert(!std::is_polymorphic_v<ZvFilePath>);
static_assert(std::is_nothrow_move_constructible_v<ZvFilePath>);
static_assert(std::is_nothrow_move_assignable_v<ZvFilePath>);
static_assert(!std::is_constructible_v<ZvFilePath, QString>);
static_assert(int(StandardPath::AppData) == 0 && int(StandardPath::Documents) == 1
              && int(StandardPath::CommonAppData) == 2);

} // namespace

Q_DECLARE_METATYPE(std::function<ZvFilePath()>)

class tst_ZvFilePath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructs_data()
    {
        QTest::addColumn<std::function<ZvFilePath()>>("make");
        QTest::addColumn<QString>("expected");
        using Make = std::function<ZvFilePath()>;
        const auto row = [](const char* name, const Make& make, const QString& expected) {
            QTest::newRow(name) << make << expected;
        };
        const QString inner = QString::fromLatin1("a\0b", 3);

        row("none", [] { return ZvFilePath(); }, {});
        row(
            "char pointer ends at NUL", [] { return ZvFilePath("a/b\0c"); }, utf8("a/b"));
        row(
            "std::string ends at NUL", [] { return ZvFilePath("a\0b"s); }, utf8("a"));
        row(
            "ZvBasicString<char>", [] { return ZvFilePath(ZvBasicString<char>("a\\b")); },
            utf8("a\\b"));
        row(
            "char pointer and size", [] { return ZvFilePath("a\0bc", 3); }, inner);
        row(
            "std::string_view", [] { return ZvFilePath("a\0b"sv); }, inner);
        row(
            "wide pointer ends at NUL", [] { return ZvFilePath(L"a/b\0c"); }, utf8("a/b"));
        row(
            "std::wstring ends at NUL", [] { return ZvFilePath(L"a\0b"s); }, utf8("a"));
        row(
            "ZvBasicString<wchar_t>", [] { return ZvFilePath(ZvBasicString<wchar_t>(L"ä\\b")); },
            utf8("ä\\b"));
        row(
            "wide pointer and size", [] { return ZvFilePath(L"a\0bc", 3); }, inner);
        row(
            "std::wstring_view", [] { return ZvFilePath(L"a\0b"sv); }, inner);
        row(
            "std::filesystem::path ends at NUL",
            [] { return ZvFilePath(std::filesystem::path("a\0b"s)); }, utf8("a"));
        row(
            "std::filesystem::path", [] { return ZvFilePath(std::filesystem::u8path("ä/€")); },
            utf8("ä/€"));
        row(
            "ZvBasicString<char16_t>",
            [] {
                return ZvFilePath(ZvBasicString<char16_t>(u"a\xD800"
                                                          "b"));
            },
            QString::fromUtf16(u"a\xD800"
                               "b"));
        row(
            "ZvBasicString<char32_t>",
            [] { return ZvFilePath(ZvBasicString<char32_t>(U"a\U0001D11E\uFFFF\uD7FF\uE000")); },
            QString::fromUtf16(u"a\xD834\xDD1E\uFFFF\uD7FF\uE000"));
        row(
            "ZvBasicString<char32_t>, highest",
            [] { return ZvFilePath(ZvBasicString<char32_t>(U"\U0010FFFF")); },
            QString::fromUtf16(u"\xDBFF\xDFFF"));
        row(
            "YString is UTF-8", [] { return ZvFilePath(YString("ä€\xF0\x9D\x84\x9E")); },
            utf8("ä€\xF0\x9D\x84\x9E"));
        row("empty texts", [] { return ZvFilePath(""); }, {});
        row("empty size", [] { return ZvFilePath("abc", 0); }, {});
        row("empty YString", [] { return ZvFilePath(YString()); }, {});
        row(
            "copy",
            [] {
                const ZvFilePath p(L"a\0b"sv);
                return ZvFilePath(p);
            },
            inner);
        row(
            "move",
            [] {
                ZvFilePath p(L"a\0b"sv);
                return ZvFilePath(std::move(p));
            },
            inner);
        row(
            "nothing is normalised", [] { return ZvFilePath(L"a//./..\\/b\\"); },
            utf8("a//./..\\/b\\"));
    }

    void constructs()
    {
        QFETCH(std::function<ZvFilePath()>, make);
        QFETCH(QString, expected);
        const ZvFilePath made = make();
        QCOMPARE(text(made), expected);
        QCOMPARE(made.size(), std::size_t(expected.size()));
        QCOMPARE(made.isEmpty(), expected.isEmpty());
        QCOMPARE(made.c_str()[made.size()], L'\0');
    }

    void narrowTextIsUtf8WithoutCodePages()
    {
#if defined(Q_OS_WIN)
        QSKIP("Narrow text is in a code page on this platform");
#endif
        const QString expected = utf8("ä€\xF0\x9D\x84\x9E");
        const std::string bytes = expected.toStdString();
        QCOMPARE(text(ZvFilePath(bytes.c_str())), expected);
        QCOMPARE(text(ZvFilePath(bytes)), expected);
        QCOMPARE(text(ZvFilePath(bytes.data(), bytes.size())), expected);
        QCOMPARE(text(ZvFilePath(std::string_view(bytes))), expected);
        QCOMPARE(ZvFilePath(bytes).size(), std::size_t(4));
    }

    void narrowTextIsInTheCodePageOfFileNames()
    {
#if defined(Q_OS_WIN)
        // The ANSI code page, or the OEM one once the process has asked for that.
        QByteArray bytes = "x";
        if (GetACP() != CP_UTF8)
            bytes += "\xE4\x84";
        QCOMPARE(text(ZvFilePath(bytes.constData())), decoded(bytes, CP_ACP));
        SetFileApisToOEM();
        bytes = GetOEMCP() == CP_UTF8 ? "x" : "x\x84";
        const QString oem = text(ZvFilePath(bytes.constData()));
        SetFileApisToANSI();
        QCOMPARE(oem, decoded(bytes, CP_OEMCP));
#else
        QSKIP("There are no code pages on this platform");
#endif
    }

    void wideTextIsTakenInSixteenBitUnits()
    {
        if constexpr (sizeof(wchar_t) == 2)
            QSKIP("Wide text has 16-bit units on this platform");
        const wchar_t units[] = {L'a',
                                 wchar_t(0x1D11E),
                                 wchar_t(0x10FFFF),
                                 wchar_t(0x110000),
                                 wchar_t(0xFFFFFFFF),
                                 wchar_t(0xD800),
                                 0};
        const char16_t expected[] = {u'a',   0xD834, 0xDD1E, 0xDBFF, 0xDFFF,
                                     0xFFFD, 0xFFFD, 0xD800, 0};
        for (const ZvFilePath& p :
             {ZvFilePath(units), ZvFilePath(std::wstring(units)), ZvFilePath(units, 6),
              ZvFilePath(std::wstring_view(units)), ZvFilePath(ZvBasicString<wchar_t>(units))}) {
            QCOMPARE(p.size(), std::size_t(8));
            QCOMPARE(text(p), QString::fromUtf16(expected));
        }
    }

    void badUtf8IsRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("lone continuation") << QByteArray("a\x80");
        QTest::newRow("lead without continuation") << QByteArray("a\xC3");
        QTest::newRow("lead before ASCII") << QByteArray("\xC3"
                                                         "a");
        QTest::newRow("three bytes cut") << QByteArray("\xE2\x82");
        QTest::newRow("four bytes cut") << QByteArray("\xF0\x9D\x84");
        QTest::newRow("overlong two") << QByteArray("\xC1\xBF");
        QTest::newRow("overlong three") << QByteArray("\xE0\x9F\xBF");
        QTest::newRow("overlong four") << QByteArray("\xF0\x8F\xBF\xBF");
        QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80");
        QTest::newRow("above U+10FFFF") << QByteArray("\xF4\x90\x80\x80");
        QTest::newRow("Latin-1") << QByteArray("h\xE9llo");
        QTest::newRow("0xFF") << QByteArray("\xFF");
    }

    void badUtf8IsRefused()
    {
        QFETCH(QByteArray, bytes);
        const char* data = bytes.constData();
        const std::error_code yString = failure([=] { ZvFilePath p{YString(data)}; });
        QVERIFY(yString);
        QCOMPARE(yString.category(), std::system_category());
#if !defined(Q_OS_WIN)
        const std::error_code expected(EILSEQ, std::system_category());
        QCOMPARE(yString, expected);
        const std::size_t size = std::size_t(bytes.size());
        QCOMPARE(failure([=] { ZvFilePath p{data}; }), expected);
        QCOMPARE(failure([=] { ZvFilePath p{std::string(data)}; }), expected);
        QCOMPARE(failure([=] { ZvFilePath p{ZvBasicString<char>(data)}; }), expected);
        QCOMPARE(failure([=] { ZvFilePath p(data, size); }), expected);
        QCOMPARE(failure([=] { ZvFilePath p{std::string_view(data)}; }), expected);
        QCOMPARE(failure([=] { ZvFilePath p{std::filesystem::path(data)}; }), expected);
        QCOMPARE(failure([=] { (void)ZvFilePath::Directory(data); }), expected);
#endif
    }

    void narrowTextFromTwoGigabytesIsRefused()
    {
        // Refused before the text is looked at, so there need be none of that size.
        const std::size_t tooLong = 0x80000000U;
        QCOMPARE(failure([=] { ZvFilePath p("a", tooLong); }), invalidArgument());
        QCOMPARE(failure([=] { ZvFilePath p{std::string_view("a", tooLong)}; }), invalidArgument());
    }

    void badUtf32IsRefused_data()
    {
        QTest::addColumn<uint>("unit");
        for (const uint unit : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0x110000U, 0xFFFFFFFFU})
            QTest::addRow("%X", unit) << unit;
    }

    void badUtf32IsRefused()
    {
        QFETCH(uint, unit);
        const char32_t units[] = {U'a', unit, 0};
        QCOMPARE(failure([&] { ZvFilePath p{ZvBasicString<char32_t>(units)}; }), invalidArgument());
    }

    void longTextsAreTaken_data()
    {
        QTest::addColumn<std::function<ZvFilePath()>>("make");
        using Make = std::function<ZvFilePath()>;
        const auto row = [](const char* name, const Make& make) { QTest::newRow(name) << make; };
        row("char pointer", [] { return ZvFilePath(std::string(longSize, 'a').c_str()); });
        row("std::string", [] { return ZvFilePath(std::string(longSize, 'a')); });
        row("ZvBasicString<char>",
            [] { return ZvFilePath(ZvBasicString<char>(std::string(longSize, 'a'))); });
        row("char pointer and size",
            [] { return ZvFilePath(std::string(longSize, 'a').c_str(), longSize); });
        row("std::string_view",
            [] { return ZvFilePath(std::string_view(std::string(longSize, 'a'))); });
        row("wide pointer", [] { return ZvFilePath(std::wstring(longSize, L'a').c_str()); });
        row("std::wstring", [] { return ZvFilePath(std::wstring(longSize, L'a')); });
        row("ZvBasicString<wchar_t>",
            [] { return ZvFilePath(ZvBasicString<wchar_t>(std::wstring(longSize, L'a'))); });
        row("wide pointer and size",
            [] { return ZvFilePath(std::wstring(longSize, L'a').c_str(), longSize); });
        row("std::wstring_view",
            [] { return ZvFilePath(std::wstring_view(std::wstring(longSize, L'a'))); });
        row("std::filesystem::path",
            [] { return ZvFilePath(std::filesystem::path(std::string(longSize, 'a'))); });
        row("ZvBasicString<char16_t>",
            [] { return ZvFilePath(ZvBasicString<char16_t>(std::u16string(longSize, u'a'))); });
        row("ZvBasicString<char32_t>",
            [] { return ZvFilePath(ZvBasicString<char32_t>(std::u32string(longSize, U'a'))); });
        row("YString", [] { return ZvFilePath(YString(std::string(longSize, 'a').c_str())); });
        row("copy", [] {
            const ZvFilePath p(std::string(longSize, 'a'));
            return ZvFilePath(p);
        });
    }

    void longTextsAreTaken()
    {
        QFETCH(std::function<ZvFilePath()>, make);
        const ZvFilePath p = make();
        QCOMPARE(p.size(), longSize);
        QCOMPARE(p.c_str()[longSize - 1], L'a');
    }

    void copyIsDeep()
    {
        ZvFilePath source(L"a");
        const ZvFilePath copy(source);
        source /= ZvFilePath(L"b");
        QCOMPARE(text(copy), utf8("a"));
    }

    void copyAssignment()
    {
        ZvFilePath target(L"a");
        const ZvFilePath source(L"b\0c"sv);
        target = source;
        QCOMPARE(target.size(), std::size_t(3));
        QCOMPARE(text(source).size(), 3);
        const ZvFilePath& same = target;
        target = same;
        QCOMPARE(target.size(), std::size_t(3));
    }

    void movedFromPathCanBeAssignedEitherWay()
    {
        ZvFilePath first(L"a");
        ZvFilePath second(std::move(first));
        const ZvFilePath copied(L"c");
        first = copied; // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(text(first), utf8("c"));
        ZvFilePath third(std::move(second));
        second = std::move(first);
        QCOMPARE(text(second), utf8("c"));
        QCOMPARE(text(third), utf8("a"));
    }

    void selfMoveAssignmentDoesNothing()
    {
        ZvFilePath p(L"a");
        ZvFilePath& same = p;
        p = std::move(same);
        QCOMPARE(text(p), utf8("a"));
    }

    void compares_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("order");
        const auto row = [](const char* name, const char* left, const char* right, int order) {
            QTest::newRow(name) << utf8(left) << utf8(right) << order;
        };
        row("empty", "", "", 0);
        row("empty and name", "", "a", -1);
        row("same", "a\\b", "a\\b", 0);
        row("either separator", "a/b", "a\\b", 0);
        row("run of separators", "a\\\\b", "a\\b", 0);
        row("run of mixed separators", "a\\/\\b", "a/b", 0);
        row("runs of different length before different names", "a\\\\c", "a\\b", 1);
        row("run against a name", "a\\\\b", "a\\bb", -1);
        row("trailing separator", "a", "a\\", -1);
        row("trailing runs", "a\\", "a\\\\/", 0);
        row("case", "a\\B", "a\\b", -1);
        row("case first", "A", "a", -1);
        row("nothing is resolved", "a\\.\\b", "a\\b", -1);
        row("separator is less than anything", "a\\b", "a b", -1);
        row("separator is less than what sorts before it", "a\\b", "a!b", -1);
        row("prefix", "ab", "abc", -1);
        row("units as numbers", "a\xEF\xBF\xBF", "az", 1);
        row("units above ASCII", "z", "ä", -1);
        row("units of two bytes", "ä", "€", -1);
        row("units of two bytes by the higher one", "\xC7\xBF", "\xC8\x80", -1);
        row("root names by their units", "\\\\z", "\\\\ä", -1);
        row("root names by units of two bytes", "\\\\ä", "\\\\€", -1);
        row("drives count case", "c:", "C:", 1);
        row("drives by letter", "C:\\z", "D:\\a", -1);
        row("root name separators count", "\\\\srv", "//srv", 1);
        row("root name separators count before all", "//srv\\z", "\\\\srv\\a", -1);
        row("shorter server", "\\\\srv\\z", "\\\\srvx\\a", -1);
        row("no root name is less", "z", "C:a", -1);
        row("root directory is greater", "C:z", "C:\\a", -1);
        row("root directory is greater without root name", "z", "\\a", -1);
        row("root directories of any length", "C:\\\\a", "C:/a", 0);
        row("root directory alone", "\\", "//", 0);
        row("device prefixes", "\\\\?\\a", "\\\\.\\a", 1);
        row("device prefix and two separators", "\\??\\\\a", "\\??\\a", -1);
        row("three separators are a root directory", "\\\\\\a", "\\a", 0);
        row("four separators are a root directory", "\\\\\\\\a", "\\a", 0);
        row("no digit is a drive", "1:\\a", "1:\\\\a", 0);
        row("long and equal", "C:\\Users\\me\\Documents\\project\\first\\plan.testplan",
            "C:/Users/me//Documents/project/first/plan.testplan", 0);
        row("long, different at the end", "C:\\Users\\me\\Documents\\project\\first\\plan.testplaa",
            "C:\\Users\\me\\Documents\\project\\first\\plan.testplan", -1);
    }

    void compares()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, order);
        const ZvFilePath l = path(left);
        const ZvFilePath r = path(right);
        QCOMPARE(l == r, order == 0);
        QCOMPARE(r == l, order == 0);
        QCOMPARE(l != r, order != 0);
        QCOMPARE(l < r, order < 0);
        QCOMPARE(r<l, order> 0);
    }

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

    void sizeCountsUnitsAsTheyAre()
    {
        QCOMPARE(ZvFilePath(L"a\\\\b").size(), std::size_t(4));
        QCOMPARE(ZvFilePath(std::filesystem::u8path("\xF0\x9D\x84\x9E")).size(), std::size_t(2));
    }

    void toQStringDropsAByteOrderMark()
    {
        const ZvFilePath marked(L"\uFEFFa\uFEFF");
        QCOMPARE(marked.size(), std::size_t(3));
        QCOMPARE(marked.toQString(), QStringLiteral("a\uFEFF"));
        QCOMPARE(QVariant::fromValue(marked).toString(), QStringLiteral("a\uFEFF"));
#if defined(Q_OS_WIN)
        QCOMPARE(ZvFilePath(L"\uFFFEa").toQString(), QStringLiteral("\u6100"));
#else
        QCOMPARE(ZvFilePath(L"\uFFFEa").toQString(), QStringLiteral("\uFFFEa"));
#endif
        QVERIFY(marked.toStdFilePath()
                == std::filesystem::u8path("\xEF\xBB\xBF"
                                           "a\xEF\xBB\xBF"));
    }

    void toStdFilePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<std::string>("onPosix");
        QTest::newRow("separators") << utf8("\\home\\u/x") << "/home/u/x"s;
        QTest::newRow("drive") << utf8("C:\\x") << "C:/x"s;
        QTest::newRow("ends at NUL") << QString::fromLatin1("a\0b", 3) << "a"s;
        QTest::newRow("characters") << utf8("ä€\xF0\x9D\x84\x9E") << "ä€\xF0\x9D\x84\x9E"s;
        QTest::newRow("unpaired high surrogate")
            << QString::fromUtf16(u"a\xD834x") << "a\xED\xA0\xB4x"s;
        QTest::newRow("unpaired low surrogate") << QString::fromUtf16(u"\xDD1E") << "\xED\xB4\x9E"s;
        QTest::newRow("empty") << utf8("") << ""s;
    }

    void toStdFilePath()
    {
        QFETCH(QString, path);
        QFETCH(std::string, onPosix);
        const std::filesystem::path result = ::path(path).toStdFilePath();
        if constexpr (std::is_same_v<std::filesystem::path::value_type, char>) {
            QCOMPARE(std::string(result.native().begin(), result.native().end()), onPosix);
        } else {
            const QString kept = path.left(path.indexOf(QChar(0)));
            QCOMPARE(QString::fromStdWString(result.wstring()), kept);
        }
    }

    void toStdFilePathOpensWhatIsThere()
    {
        const QTemporaryDir directory;
        ZvFilePath p = path(QDir::toNativeSeparators(directory.path()));
        p.makePreferred();
        p /= ZvFilePath(std::filesystem::u8path("sub ä"));
        QVERIFY(std::filesystem::create_directory(p.toStdFilePath()));
        p /= ZvFilePath(L"file.zvsch");
        std::ofstream(p.toStdFilePath()) << "text";
        QVERIFY(QFile::exists(directory.filePath(utf8("sub ä/file.zvsch"))));
    }

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

    void textOfQtComesInAsWideText()
    {
        const QString name = utf8("\xC3\xA4/\xF0\x9D\x84\x9E");
        QCOMPARE(ZvFilePath(name.toStdWString()).toQString(), name);
        QCOMPARE(ZvFilePath::Directory(name.toStdWString()).toQString(), name + utf8("\\"));
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

    void metaTypeIsRegisteredUnderBothNames()
    {
        const int id = qMetaTypeId<ZvFilePath>();
        QCOMPARE(QMetaType::type("zvutil::ZvFilePath"), id);
        QCOMPARE(QMetaType::type("ZvFilePath"), id);
        QCOMPARE(QMetaType::typeName(id), "zvutil::ZvFilePath");
        const QMetaType::TypeFlags flags = QMetaType::typeFlags(id);
        QCOMPARE(flags,
                 QMetaType::NeedsConstruction | QMetaType::NeedsDestruction
                     | QMetaType::WasDeclaredAsMetaType);
    }

    void metaTypeBuildsAnEmptyPathFromNothing()
    {
        const int id = QMetaType::type("ZvFilePath");
        auto* created = static_cast<ZvFilePath*>(QMetaType::create(id, nullptr));
        QVERIFY(created->isEmpty());
        QMetaType::destroy(id, created);
        const ZvFilePath source(L"a");
        created = static_cast<ZvFilePath*>(QMetaType::create(id, &source));
        QCOMPARE(text(*created), utf8("a"));
        QMetaType::destroy(id, created);
    }

    void variantConvertsToString()
    {
        const QVariant variant = QVariant::fromValue(ZvFilePath(L"C:\\a/b"));
        QVERIFY(variant.canConvert<QString>());
        QCOMPARE(variant.toString(), utf8("C:\\a/b"));
        QVERIFY(!QVariant(utf8("a")).canConvert<ZvFilePath>());
    }

    void severalThreadsShareNothing()
    {
        const ZvFilePath shared(L"C:\\a\\b.zvsch");
        std::atomic<int> wrong{0};
        const auto work = [&wrong, &shared] {
            for (int i = 0; i < 2'000; ++i) {
                ZvFilePath mine = shared;
                mine = mine.parentPath();
                mine /= shared.filename();
                if (mine != shared || QVariant::fromValue(mine).toString().size() != 12)
                    ++wrong;
            }
        };
        zvtest::onTwoThreads(work);
        QCOMPARE(wrong.load(), 0);
    }

    void printsReadably()
    {
        QString printed;
        QDebug(&printed).nospace() << ZvFilePath(L"C:/ä");
        QCOMPARE(printed, utf8("\"C:/ä\""));
        char* shown = toString(ZvFilePath(std::filesystem::u8path("ä")));
        QCOMPARE(QString::fromUtf8(shown), utf8("ä"));
        delete[] shown;
    }
};

QTEST_GUILESS_MAIN(tst_ZvFilePath)
#include "tst_ZvFilePath.moc"
