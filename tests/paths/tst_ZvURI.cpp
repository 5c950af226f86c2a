#include <zvutil/ZvURI.h>

#include <zvutil/ZvFilePath.h>

#include "support/StdString.h"

#include <HostSupport/host.h>

#include <QTest>

#include <string>
#include <type_traits>
#include <utility>

using zvutil::uri;
using zvutil::UriKind;
using zvutil::ZvBasicString;
using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvURI) == 3 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvURI>);
static_assert(std::is_nothrow_move_constructible_v<ZvURI>);
static_assert(std::is_nothrow_move_assignable_v<ZvURI>);
// There is deliberately no way back.
static_assert(
    std::is_constructible_v<ZvURI, const char*> && std::is_constructible_v<ZvURI, char[5]>);
static_assert(std::is_constructible_v<ZvURI, std::string>);
static_assert(std::is_constructible_v<ZvURI, ZvFilePath> && std::is_constructible_v<ZvURI, uri>);
static_assert(std::is_constructible_v<ZvURI, zvutil::ZvBasicString<char>>);
// It would mean a path, as wide text does.
static_assert(!std::is_constructible_v<ZvURI, std::string_view>);
static_assert(!std::is_constructible_v<ZvFilePath, ZvURI>);
static_assert(!std::is_constructible_v<ZvFilePath, uri>);

std::string textOf(const ZvURI& u)
{
    return u.c_str();
}

/// The text that scripts get for a path.
std::string scriptText(const std::string& path)
{
    return host::callFunction("PathToURI", {path}, {}).front();
}

} // namespace

Q_DECLARE_METATYPE(std::wstring)

class tst_ZvURI : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty()
    {
        const ZvURI u;
        QCOMPARE(textOf(u), ""s);
        QVERIFY(u == ZvURI());
        QVERIFY(!(u != ZvURI()));
        QVERIFY(u.toURI().kind() == UriKind::None);
    }

    void text_data()
    {
        QTest::addColumn<std::string>("given");
        QTest::addColumn<std::string>("text");
        QTest::newRow("empty") << ""s
                               << ""s;
        QTest::newRow("path without scheme") << "C:\\a b"s
                                             << "C:/a%20b"s;
        QTest::newRow("file") << "file:\\\\\\C:\\a b"s
                              << "file:///C:/a%20b"s;
        QTest::newRow("http") << "http://me@srv:80/a b?x y#z"s
                              << "http://me@srv:80/a%20b?x%20y#z"s;
        QTest::newRow("unknown scheme") << "mailto:me you"s
                                        << "mailto:me%20you"s;
        QTest::newRow("escapes stay") << "a%20b%"s
                                      << "a%20b%"s;
        QTest::newRow("bytes above 0x7F stay") << "\xC3\xA4\xFF"s
                                               << "\xC3\xA4\xFF"s;
        QTest::newRow("ends at NUL") << "a b\0c"s
                                     << "a%20b"s;
    }

    void text()
    {
        QFETCH(std::string, given);
        QFETCH(std::string, text);
        const ZvURI made[] = {
            ZvURI(given.c_str()),
            ZvURI(given),
            ZvURI(ZvBasicString<char>(given)),
            ZvURI(uri(given)),
        };
        for (const ZvURI& u : made) {
            QCOMPARE(textOf(u), text);
            QCOMPARE(u.toString().toStdString(), text);
            QCOMPARE(u.toURI().text(), text);
            QVERIFY(u == made[0]);
            QCOMPARE(textOf(ZvURI(u)), text);
        }
        ZvURI set("before");
        set.set(given.c_str());
        QCOMPARE(textOf(set), text);
        set.set("between");
        set.set(ZvBasicString<char>(given));
        QCOMPARE(textOf(set), text);
        set.set("between");
        set.set(made[0]);
        QCOMPARE(textOf(set), text);
    }

    void componentsAreToBeHadThroughURI()
    {
        const uri parts = ZvURI("http://me@srv:8080/p?q#f").toURI();
        QVERIFY(parts.kind() == UriKind::Http);
        QCOMPARE(std::string(parts.userinfo()), "me"s);
        QCOMPARE(std::string(parts.host()), "srv"s);
        QCOMPARE(std::string(parts.port()), "8080"s);
        QCOMPARE(std::string(parts.path()), "/p"s);
        QCOMPARE(std::string(parts.query()), "q"s);
        QCOMPARE(std::string(parts.fragment()), "f"s);
    }

    void twoWaysFromAPath_data()
    {
        QTest::addColumn<std::string>("path");
        QTest::addColumn<std::string>("uriText");
        QTest::addColumn<std::string>("scriptText");
        QTest::newRow("drive") << "C:\\a b"s
                               << "file:/C:/a%20b"s
                               << "file:///C:/a%20b"s;
        QTest::newRow("UNC") << "\\\\srv\\x"s
                             << "file:///srv/x"s
                             << "file://srv/x"s;
        QTest::newRow("URI") << "file:x"s
                             << "file:/file:x"s
                             << "file:x"s;
        QTest::newRow("URI that isn't normal") << "file:\\a b"s
                                               << "file:/file:/a%20b"s
                                               << "file:\\a b"s;
        QTest::newRow("relative") << "a\\b"s
                                  << "file:/a/b"s
                                  << "file:///a/b"s;
        QTest::newRow("root of a drive") << "C:\\"s
                                         << "file:/C:/"s
                                         << "file:///C:/"s;
        QTest::newRow("root") << "\\"s
                              << "file://"s
                              << "file:////"s;
        QTest::newRow("slashes are no UNC prefix for scripts") << "//srv/x"s
                                                               << "file:///srv/x"s
                                                               << "file://///srv/x"s;
        QTest::newRow("empty") << ""s
                               << "file:/"s
                               << "file:///"s;
        QTest::newRow("escapes stay") << "C:\\a%20b"s
                                      << "file:/C:/a%20b"s
                                      << "file:///C:/a%20b"s;
        QTest::newRow("other signs stay") << "C:\\a#b?c"s
                                          << "file:/C:/a#b?c"s
                                          << "file:///C:/a#b?c"s;
    }

    void twoWaysFromAPath()
    {
        QFETCH(std::string, path);
        QFETCH(std::string, uriText);
        QFETCH(std::string, scriptText);
        const ZvURI u{ZvFilePath(path)};
        QCOMPARE(textOf(u), uriText);
        QVERIFY(u.toURI().kind() == UriKind::File);
        QCOMPARE(::scriptText(path), scriptText);

        ZvURI set("before");
        set.set(ZvFilePath(path));
        QCOMPARE(textOf(set), uriText);
    }

    void unitsOfAPath_data()
    {
        QTest::addColumn<std::wstring>("path");
        QTest::addColumn<std::string>("text");
        QTest::newRow("two bytes") << L"\xE4"s << "file:/\xC3\xA4"s;
        QTest::newRow("three bytes") << L"\x20AC"s << "file:/\xE2\x82\xAC"s;
        QTest::newRow("pair, six bytes") << L"\xD834\xDD1E"s << "file:/\xED\xA0\xB4\xED\xB4\x9E"s;
        QTest::newRow("unpaired surrogate") << L"a\xD800"s << "file:/a\xED\xA0\x80"s;
        QTest::newRow("ends at NUL") << L"a b\0c"s << "file:/a%20b"s;
        QTest::newRow("NUL first") << L"\0c"s << "file:/"s;
    }

    void wideTextIsAPath()
    {
        const std::wstring wide = L"http://x";
        QCOMPARE(std::string(ZvURI(wide.c_str()).c_str()), "file:/http://x"s);
        QCOMPARE(std::string(ZvURI(wide).c_str()), "file:/http://x"s);
        ZvURI set;
        set.set(wide.c_str());
        QCOMPARE(std::string(set.c_str()), "file:/http://x"s);
        QCOMPARE(uri(wide.c_str()).text(), "file:/http://x"s);
        QCOMPARE(uri(wide).text(), "file:/http://x"s);
    }

    void unitsOfAPath()
    {
        QFETCH(std::wstring, path);
        QFETCH(std::string, text);
        const ZvFilePath all(path.data(), path.size());
        QCOMPARE(all.size(), path.size());
        QCOMPARE(textOf(ZvURI(all)), text);
    }

    void scriptsGetTheBytesUnchanged()
    {
        // The one row in which the input differs: the way of the library is that of 16-bit units.
        QCOMPARE(scriptText("\xF0\x9D\x84\x9E\xFF"), "file:///\xF0\x9D\x84\x9E\xFF"s);
    }

    void equality_data()
    {
        QTest::addColumn<std::string>("a");
        QTest::addColumn<std::string>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("same") << "file:///a"s
                              << "file:///a"s << true;
        QTest::newRow("normalised alike") << "file:///a b"s
                                          << "file:\\\\\\a%20b"s << true;
        QTest::newRow("case") << "file:///A"s
                              << "file:///a"s << false;
        QTest::newRow("escape of the same character") << "file:///%41"s
                                                      << "file:///A"s << false;
        QTest::newRow("case of an escape") << "file:///%2f"s
                                           << "file:///%2F"s << false;
        QTest::newRow("slashes") << "file:/x"s
                                 << "file:///x"s << false;
        QTest::newRow("prefix") << "file:///a"s
                                << "file:///ab"s << false;
    }

    void equality()
    {
        QFETCH(std::string, a);
        QFETCH(std::string, b);
        QFETCH(bool, equal);
        QCOMPARE(ZvURI(a) == ZvURI(b), equal);
        QCOMPARE(ZvURI(b) == ZvURI(a), equal);
        QCOMPARE(ZvURI(a) != ZvURI(b), !equal);
    }

    void copiesShareNothing()
    {
        ZvURI source("a b");
        const ZvURI copy(source);
        ZvURI assigned;
        QVERIFY(&(assigned = source) == &assigned);
        source.set("x");
        QCOMPARE(textOf(copy), "a%20b"s);
        QCOMPARE(textOf(assigned), "a%20b"s);
    }

    void assignmentToItself()
    {
        ZvURI u("http://srv/a b");
        const ZvURI& self = u;
        u = self;
        QCOMPARE(textOf(u), "http://srv/a%20b"s);
        u.set(u);
        QCOMPARE(textOf(u), "http://srv/a%20b"s);
        u.set(u.c_str());
        QCOMPARE(textOf(u), "http://srv/a%20b"s);
        QCOMPARE(std::string(u.toURI().host()), "srv"s);
    }

    void moves()
    {
        ZvURI source("a text that is too long to lie in the string itself");
        const char* const place = source.c_str();
        ZvURI target(std::move(source));
        QVERIFY(target.c_str() == place);

        // A moved-from URI can be moved on and be the target of a move.
        ZvURI empty(std::move(source)); // NOLINT(bugprone-use-after-move)
        QVERIFY(&(empty = std::move(target)) == &empty);
        QVERIFY(empty.c_str() == place);
        ZvURI& self = empty;
        empty = std::move(self);
        QVERIFY(empty.c_str() == place);
    }

    void longText()
    {
        const std::string blanks(1'000'000, ' ');
        QCOMPARE(textOf(ZvURI(blanks)).size(), 3 * blanks.size());
        QCOMPARE(textOf(ZvURI(ZvFilePath(blanks))).size(), 6 + 3 * blanks.size());
    }
};

QTEST_GUILESS_MAIN(tst_ZvURI)
#include "tst_ZvURI.moc"
