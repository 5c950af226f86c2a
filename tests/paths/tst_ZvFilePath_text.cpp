// The texts that file paths are made of, and those that they give back.

#include "FilePathTexts.h"

#include <zvutil/ZvFilePath.h>

#include "support/StdString.h"

#include <HostSupport/YString.h>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

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

using zvtest::failure;
using zvtest::path;
using zvtest::text;
using zvtest::utf8;
using zvutil::ZvBasicString;
using zvutil::ZvFilePath;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

#if defined(Q_OS_WIN)
QString decoded(const QByteArray& bytes, UINT codePage)
{
    wchar_t units[16];
    const int size = MultiByteToWideChar(codePage, 0, bytes.constData(), bytes.size(), units, 16);
    return QString::fromWCharArray(units, size);
}
#endif

std::error_code invalidArgument()
{
    return {EINVAL, std::generic_category()};
}

/// The size of the long texts that every constructor has to take.
constexpr std::size_t longSize = 100'000'000;

} // namespace

Q_DECLARE_METATYPE(std::function<ZvFilePath()>)

class tst_ZvFilePath_text : public QObject
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

    void sizeCountsUnitsAsTheyAre()
    {
        QCOMPARE(ZvFilePath(L"a\\\\b").size(), std::size_t(4));
        QCOMPARE(ZvFilePath(std::filesystem::u8path("\xF0\x9D\x84\x9E")).size(), std::size_t(2));
    }

    void toQStringDropsAByteOrderMark()
    {
        const ZvFilePath marked(L"\uFEFFa\uFEFF");
        QCOMPARE(marked.size(), std::size_t(3));
        QCOMPARE(marked.toQString(), QString("a\uFEFF"));
        QCOMPARE(QVariant::fromValue(marked).toString(), QString("a\uFEFF"));
#if defined(Q_OS_WIN)
        QCOMPARE(ZvFilePath(L"\uFFFEa").toQString(), QString("\u6100"));
#else
        QCOMPARE(ZvFilePath(L"\uFFFEa").toQString(), QString("\uFFFEa"));
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

    void textOfQtComesInAsWideText()
    {
        const QString name = utf8("\xC3\xA4/\xF0\x9D\x84\x9E");
        QCOMPARE(ZvFilePath(name.toStdWString()).toQString(), name);
        QCOMPARE(ZvFilePath::Directory(name.toStdWString()).toQString(), name + utf8("\\"));
    }

    void variantConvertsToString()
    {
        const QVariant variant = QVariant::fromValue(ZvFilePath(L"C:\\a/b"));
        QVERIFY(variant.canConvert<QString>());
        QCOMPARE(variant.toString(), utf8("C:\\a/b"));
        QVERIFY(!QVariant(utf8("a")).canConvert<ZvFilePath>());
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

QTEST_GUILESS_MAIN(tst_ZvFilePath_text)
#include "tst_ZvFilePath_text.moc"
