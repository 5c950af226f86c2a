#include <zvutil/uri.h>

#include "support/SmallStack.h"
#include "support/StdString.h"
#include "support/Threads.h"
#include "support/UriOracle.h"

#include <QTest>

#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

using zvtest::disagreement;
using zvtest::readable;
using zvtest::Split;
using zvtest::splitByExpression;
using zvtest::splitOf;
using zvutil::uri;
using zvutil::UriKind;
using namespace std::string_literals;

namespace {

bool liesIn(std::string_view part, const std::string& text)
{
    return part.empty()
        || (part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size());
}

static_assert(sizeof(uri) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<uri>);
static_assert(std::is_base_of_v<zvutil::basic_pimpl<zvutil::impl::uri_impl>, uri>);
static_assert(!std::is_copy_constructible_v<uri> && !std::is_copy_assignable_v<uri>);
static_assert(std::is_nothrow_move_constructible_v<uri> && std::is_nothrow_move_assignable_v<uri>);
static_assert(!std::is_copy_constructible_v<zvutil::impl::uri_impl>);
static_assert(!std::is_move_constructible_v<zvutil::impl::uri_impl>);
static_assert(std::is_constructible_v<uri, const char*> && std::is_constructible_v<uri, char[5]>);
static_assert(std::is_constructible_v<uri, std::string>);
static_assert(std::is_constructible_v<uri, const std::filesystem::path&>);

// It would mean a path, as wide text does.
static_assert(!std::is_constructible_v<uri, std::string_view>);
static_assert(std::is_constructible_v<uri, const wchar_t*>);
static_assert(std::is_constructible_v<uri, std::wstring>);
static_assert(sizeof(UriKind) == 4);
static_assert(int(UriKind::None) == 0 && int(UriKind::File) == 1 && int(UriKind::Http) == 2
              && int(UriKind::Https) == 3 && int(UriKind::Unknown) == 4);

} // namespace

class tst_uri : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultConstructedIsEmpty() { QCOMPARE(splitOf(uri()), Split()); }

    void splits_data()
    {
        QTest::addColumn<std::string>("argument");
        QTest::addColumn<Split>("expected");
        const auto row = [](const char* name, const std::string& argument, const std::string& text,
                            const std::array<std::string, 8>& parts, UriKind kind) {
            QTest::newRow(name) << argument << Split{text, parts, kind};
        };
        const std::array<std::string, 8> none;

        row("file, empty authority", "file:///C:/a%20b/c.txt?x=1#top",
            "file:///C:/a%20b/c.txt?x=1#top",
            {"file", "", "", "", "", "/C:/a%20b/c.txt", "x=1", "top"}, UriKind::File);
        row("file, no authority", "file:/C:/x", "file:/C:/x",
            {"file", "", "", "", "", "/C:/x", "", ""}, UriKind::File);
        row("all parts", "http://me@srv:8080/p?q#f", "http://me@srv:8080/p?q#f",
            {"http", "me@srv:8080", "me", "srv", "8080", "/p", "q", "f"}, UriKind::Http);
        row("host alone", "https://srv", "https://srv", {"https", "srv", "", "srv", "", "", "", ""},
            UriKind::Https);
        row("unknown scheme", "mailto:x", "mailto:x", none, UriKind::None);

        row("empty", "", "", none, UriKind::None);
        row("only backslashes and blanks", "\\ \\ ", "/%20/%20", none, UriKind::None);
        row("scheme alone", "http:", "http:", {"http", "", "", "", "", "", "", ""}, UriKind::Http);
        row("second # is fragment", "http:#a#b", "http:#a#b",
            {"http", "", "", "", "", "", "", "a#b"}, UriKind::Http);
        row("? behind # is fragment", "http:#a?b", "http:#a?b",
            {"http", "", "", "", "", "", "", "a?b"}, UriKind::Http);
        row("second ? is query", "http:?a?b", "http:?a?b", {"http", "", "", "", "", "", "a?b", ""},
            UriKind::Http);
        row("path without slash behind port", "http://srv:80a/", "http://srv:80a/",
            {"http", "srv:80", "", "srv", "80", "a/", "", ""}, UriKind::Http);
        row("scheme counts case", "Http://srv", "Http://srv", none, UriKind::None);
        row("scheme in capitals", "FILE:x", "FILE:x", none, UriKind::None);

        row("scheme without colon", "https", "https", none, UriKind::None);
        row("scheme that goes on", "filex:", "filex:", none, UriKind::None);
        row("nothing before the colon", ":x", ":x", none, UriKind::None);
        row("blank in front", " file:x", "%20file:x", none, UriKind::None);
        row("one slash is path", "http:/srv", "http:/srv", {"http", "", "", "", "", "/srv", "", ""},
            UriKind::Http);
        row("two slashes alone", "http://", "http://", {"http", "", "", "", "", "", "", ""},
            UriKind::Http);
        row("three slashes", "http:///", "http:///", {"http", "", "", "", "", "/", "", ""},
            UriKind::Http);
        row("backslashes make an authority", "http:\\\\srv\\p", "http://srv/p",
            {"http", "srv", "", "srv", "", "/p", "", ""}, UriKind::Http);
        row("user reaches over / ? #", "http://a/b?c#d@srv/p", "http://a/b?c#d@srv/p",
            {"http", "a/b?c#d@srv", "a/b?c#d", "srv", "", "/p", "", ""}, UriKind::Http);
        row("user ends at the first @", "http://a@b@c/p", "http://a@b@c/p",
            {"http", "a@b@c", "a", "b@c", "", "/p", "", ""}, UriKind::Http);
        row("user with password", "http://u:p@srv", "http://u:p@srv",
            {"http", "u:p@srv", "u:p", "srv", "", "", "", ""}, UriKind::Http);
        row("empty user", "http://@srv", "http://@srv", {"http", "@srv", "", "srv", "", "", "", ""},
            UriKind::Http);
        row("@ without authority", "http:a@b", "http:a@b", {"http", "", "", "", "", "a@b", "", ""},
            UriKind::Http);
        row("host runs over ?", "http://srv?x=1", "http://srv?x=1",
            {"http", "srv?x=1", "", "srv?x=1", "", "", "", ""}, UriKind::Http);
        row("host runs over #", "http://srv#top", "http://srv#top",
            {"http", "srv#top", "", "srv#top", "", "", "", ""}, UriKind::Http);
        row("empty port", "http://srv:/p", "http://srv:/p",
            {"http", "srv:", "", "srv", "", "/p", "", ""}, UriKind::Http);
        row("port without host", "http://:80", "http://:80",
            {"http", ":80", "", "", "80", "", "", ""}, UriKind::Http);
        row("second colon is path", "http://srv:80:90", "http://srv:80:90",
            {"http", "srv:80", "", "srv", "80", ":90", "", ""}, UriKind::Http);
        row("query behind port", "http://srv:80?q#f", "http://srv:80?q#f",
            {"http", "srv:80", "", "srv", "80", "", "q", "f"}, UriKind::Http);
        row("empty query and fragment", "http:?#", "http:?#", {"http", "", "", "", "", "", "", ""},
            UriKind::Http);
        row("blanks everywhere", "http://a b@c d/e f?g h#i j",
            "http://a%20b@c%20d/e%20f?g%20h#i%20j",
            {"http", "a%20b@c%20d", "a%20b", "c%20d", "", "/e%20f", "g%20h", "i%20j"},
            UriKind::Http);
        row("backslashes everywhere", "http:\\\\a\\b@c\\d?\\#\\", "http://a/b@c/d?/#/",
            {"http", "a/b@c", "a/b", "c", "", "/d", "/", "/"}, UriKind::Http);
        row("tab and line feed stay", "file:a\tb\nc\rd", "file:a\tb\nc\rd",
            {"file", "", "", "", "", "a\tb\nc\rd", "", ""}, UriKind::File);
        row("% is left alone", "file:%20%5C%", "file:%20%5C%",
            {"file", "", "", "", "", "%20%5C%", "", ""}, UriKind::File);
        row("bytes above 0x7F", "http://\xC3\xA4@\xFF/\x80", "http://\xC3\xA4@\xFF/\x80",
            {"http", "\xC3\xA4@\xFF", "\xC3\xA4", "\xFF", "", "/\x80", "", ""}, UriKind::Http);
        row("NUL ends the split, not the text", "file:a\0b c"s, "file:a\0b%20c"s,
            {"file", "", "", "", "", "a", "", ""}, UriKind::File);
        row("NUL in the scheme", "fi\0le:a"s, "fi\0le:a"s, none, UriKind::None);
        row("@ behind NUL counts for nothing", "http://a\0@b"s, "http://a\0@b"s,
            {"http", "a", "", "a", "", "", "", ""}, UriKind::Http);
    }

    void splits()
    {
        QFETCH(std::string, argument);
        QFETCH(Split, expected);
        QCOMPARE(readable(splitOf(uri(argument))), readable(expected));
        QCOMPARE(readable(splitByExpression(argument)), readable(expected));
    }

    void parsingTheTextAgainChangesNothing_data() { splits_data(); }

    void parsingTheTextAgainChangesNothing()
    {
        QFETCH(std::string, argument);
        const uri once(argument);
        QCOMPARE(splitOf(uri(once.text())), splitOf(once));
    }

    void viewsLieInTheText_data() { splits_data(); }

    void viewsLieInTheText()
    {
        QFETCH(std::string, argument);
        const uri u(argument);
        for (const std::string_view part : {u.scheme(), u.authority(), u.userinfo(), u.host(),
                                            u.port(), u.path(), u.query(), u.fragment()})
            QVERIFY(liesIn(part, u.text()));
    }

    void pointerIsReadUpToItsNul()
    {
        QCOMPARE(splitOf(uri("file:a\0b")), splitOf(uri("file:a"s)));
        QCOMPARE(splitOf(uri("")), Split());
    }

    void fromPath_data()
    {
        QTest::addColumn<std::string>("path");
        QTest::addColumn<std::string>("expected");
        QTest::newRow("drive") << "C:\\a b\\c.txt"s
                               << "file:/C:/a%20b/c.txt"s;
        QTest::newRow("UNC gets three slashes") << "\\\\srv\\x"s
                                                << "file:///srv/x"s;
        QTest::newRow("relative stays relative") << "a\\b"s
                                                 << "file:/a/b"s;
        QTest::newRow("empty") << ""s
                               << "file:/"s;
        QTest::newRow("slash in front") << "/usr/lib"s
                                        << "file://usr/lib"s;
        QTest::newRow("what looks like a URI") << "file:x"s
                                               << "file:/file:x"s;
        QTest::newRow("two and three bytes") << "\xC3\xA4/\xE2\x82\xAC"s
                                             << "file:/\xC3\xA4/\xE2\x82\xAC"s;
        QTest::newRow("above U+FFFF, each surrogate by itself")
            << "\xF0\x9D\x84\x9E"s
            << "file:/\xED\xA0\xB4\xED\xB4\x9E"s;
        QTest::newRow("highest character") << "\xF4\x8F\xBF\xBF"s
                                           << "file:/\xED\xAF\xBF\xED\xBF\xBF"s;
    }

    void fromPath()
    {
        QFETCH(std::string, path);
        QFETCH(std::string, expected);
        const uri u(std::filesystem::u8path(path));
        QCOMPARE(u.text(), expected);
        QCOMPARE(splitOf(u), splitByExpression(expected));
    }

    void pathThatIsNotUtf8_data()
    {
        QTest::addColumn<std::string>("path");
        QTest::newRow("lone continuation") << "\x80"s;
        QTest::newRow("lead without continuation") << "\xC3"s;
        QTest::newRow("lead before ASCII") << "\xC3x"s;
        QTest::newRow("three bytes cut to two") << "\xE2\x82"s;
        QTest::newRow("four bytes cut to three") << "\xF0\x9D\x84"s;
        QTest::newRow("overlong two") << "\xC0\x80"s;
        QTest::newRow("overlong three") << "\xE0\x9F\xBF"s;
        QTest::newRow("overlong four") << "\xF0\x8F\xBF\xBF"s;
        QTest::newRow("surrogate") << "\xED\xA0\x80"s;
        QTest::newRow("last surrogate") << "\xED\xBF\xBF"s;
        QTest::newRow("above U+10FFFF") << "\xF4\x90\x80\x80"s;
        QTest::newRow("five-byte lead") << "\xF8\x88\x80\x80\x80"s;
        QTest::newRow("0xFF") << "\xFF"s;
    }

    void pathThatIsNotUtf8()
    {
        if constexpr (!std::is_same_v<std::filesystem::path::value_type, char>)
            QSKIP("Paths are wide text on this platform");
        QFETCH(std::string, path);
        try {
            const uri accepted{std::filesystem::path(path)};
            QFAIL("accepted");
        } catch (const std::system_error& error) {
            QCOMPARE(error.code(), std::error_code(EILSEQ, std::system_category()));
        }
    }

    void pathUnitsAreWrittenOneByOne()
    {
        if constexpr (std::is_same_v<std::filesystem::path::value_type, char>)
            QSKIP("A path of bytes can't hold an unpaired surrogate");
        QCOMPARE(uri(std::filesystem::path(L"\xD834")).text(), "file:/\xED\xA0\xB4"s);
    }

    void equalsTheExpressionOnAllShortTexts()
    {
        const std::string alphabet = "/:@?#7x";
        const std::size_t longest = 5;
        int checked = 0;
        for (const std::string& prefix : {"file:"s, "http:/"s, "https://"s}) {
            std::vector<std::string> texts{prefix};
            for (std::size_t i = 0; i < texts.size(); ++i) {
                const std::string text = texts[i];
                QCOMPARE(disagreement(text), QByteArray());
                ++checked;
                if (text.size() < prefix.size() + longest) {
                    for (const char c : alphabet)
                        texts.push_back(text + c);
                }
            }
        }
        // Per prefix the texts of 0 to 5 characters out of 7.
        QCOMPARE(checked, 3 * (1 + 7 + 49 + 343 + 2'401 + 16'807));
    }

    void longTextsNeedNoStack_data()
    {
        QTest::addColumn<char>("repeated");
        // With the NUL at the end of the literal.
        for (const char c : "/:@?#\\ %7x\x80")
            QTest::addRow("%s", QByteArray(1, c).toPercentEncoding().constData()) << c;
    }

    void longTextsNeedNoStack()
    {
        QFETCH(char, repeated);
        const std::size_t length = 64 * 1024 * 1024;
        const std::string text = "http://" + std::string(length, repeated);
        zvtest::onSmallStack([&] {
            const uri u(text);
            QCOMPARE(u.text().size(), 7 + (repeated == ' ' ? 3 : 1) * length);
            QCOMPARE(u.kind(), UriKind::Http);
        });
    }

    void moveHandsTheViewsOn()
    {
        uri source("http://me@srv:8080/p?q#f");
        const Split split = splitOf(source);
        uri target(std::move(source));
        QCOMPARE(splitOf(target), split);
        source = std::move(target);
        QCOMPARE(splitOf(source), split);
        target = uri("file:x");
        QCOMPARE(target.kind(), UriKind::File);
    }
};

QTEST_GUILESS_MAIN(tst_uri)
#include "tst_uri.moc"
