#include "support/Messages.h"
#include "support/StdString.h"

#include <HostSupport/host.h>

#include <QLibrary>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

using zvtest::Messages;
using namespace std::string_literals;

namespace {

class OneString final : public FuncArgsMinimal
{
public:
    explicit OneString(const char* text)
        : m_text(text)
    {
    }
    const void* value(int index) const override
    {
        asked.push_back(index);
        return &m_text;
    }

    mutable std::vector<int> asked;

private:
    const char* m_text;
};

/// Stands for any way in which a handler may fail, lack of memory for one.
class ThrowingArguments final : public FuncArgsMinimal
{
public:
    const void* value(int /*index*/) const override { throw std::bad_alloc(); }
};

class OneResult final : public FuncResultMinimal
{
public:
    char** allotStrings(int count) override
    {
        allotted.push_back(count);
        return &buffer;
    }

    std::vector<int> allotted;
    char* buffer = nullptr;
};

class ThrowingResult final : public FuncResultMinimal
{
public:
    char** allotStrings(int /*count*/) override { throw std::bad_alloc(); }
};

host::FunctionInfo function()
{
    const auto all = host::functions();
    const auto found =
        std::find_if(all.begin(), all.end(), [](const auto& f) { return f.name == "PathToURI"; });
    return found == all.end() ? host::FunctionInfo() : *found;
}

} // namespace

class tst_PathToURI : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLibrary library(ZVUTIL_FILE);
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        QVERIFY(function().handler);
    }

    void cleanup() { QCOMPARE(Messages::alive, 0); }

    void isRegisteredAsAFunctionOfOneString()
    {
        QCOMPARE(function().arguments, std::vector<argType>{ARG_STRING});
        QCOMPARE(int(function().arguments.front()), 1);
        QCOMPARE(function().resultCount, 1);
    }

    void text_data()
    {
        QTest::addColumn<std::string>("argument");
        QTest::addColumn<std::string>("result");
        QTest::newRow("drive") << "C:\\Users\\me\\my file.txt"s
                               << "file:///C:/Users/me/my%20file.txt"s;
        QTest::newRow("UNC") << "\\\\server\\share\\a b"s
                             << "file://server/share/a%20b"s;
        QTest::newRow("UNC prefix alone") << "\\\\"s
                                          << "file://"s;
        QTest::newRow("three backslashes") << "\\\\\\a"s
                                           << "file:///a"s;
        QTest::newRow("URI") << "file:///already good"s
                             << "file:///already good"s;
        QTest::newRow("URI, backslashes and blanks stay") << "file:\\ a\\b c"s
                                                          << "file:\\ a\\b c"s;
        QTest::newRow("file: alone") << "file:"s
                                     << "file:"s;
        QTest::newRow("URI in capitals is a path") << "FILE:x"s
                                                   << "file:///FILE:x"s;
        QTest::newRow("URI in mixed case is a path") << "File:x"s
                                                     << "file:///File:x"s;
        QTest::newRow("file without colon") << "file"s
                                            << "file:///file"s;
        QTest::newRow("another scheme is a path") << "http://x y"s
                                                  << "file:///http://x%20y"s;
        QTest::newRow("empty") << ""s
                               << "file:///"s;
        QTest::newRow("one backslash") << "\\"s
                                       << "file:////"s;
        QTest::newRow("slashes are no UNC prefix") << "//srv/x"s
                                                   << "file://///srv/x"s;
        QTest::newRow("slash and backslash are no UNC prefix") << "/\\srv"s
                                                               << "file://///srv"s;
        QTest::newRow("bytes above 0x7F stay") << "C:\\\xC3\xA4 \xFF"s
                                               << "file:///C:/\xC3\xA4%20\xFF"s;
        QTest::newRow("% stays") << "a%20b"s
                                 << "file:///a%20b"s;
        QTest::newRow("ends at NUL") << "a b\0c"s
                                     << "file:///a%20b"s;
    }

    void text()
    {
        QFETCH(std::string, argument);
        QFETCH(std::string, result);
        const YRef<MessageHandler> messages(std::make_unique<Messages>());
        QCOMPARE(host::callFunction("PathToURI", {argument}, messages), std::vector{result});
        QCOMPARE(messages.useCount(), 1L);
    }

    void asksForOneArgumentAndOneResult()
    {
        const OneString arguments("x");
        OneResult result;
        QCOMPARE(function().handler(arguments, &result, {}), FUNC_OK);
        QCOMPARE(arguments.asked, std::vector{0});
        QCOMPARE(result.allotted, std::vector{1});
        QCOMPARE(std::string(result.buffer), "file:///x"s);
        // The buffer is the host's: the address sanitizer would tell of one that isn't from malloc.
        std::free(result.buffer);
    }

    void lastReferenceToTheMessageHandlerIsReleased()
    {
        const OneString arguments("x");
        OneResult result;
        function().handler(arguments, &result, YRef<MessageHandler>(std::make_unique<Messages>()));
        QCOMPARE(Messages::alive, 0);
        std::free(result.buffer);
    }

    void messageHandlerIsReleasedWhenTheArgumentsThrow()
    {
        const YRef<MessageHandler> messages(std::make_unique<Messages>());
        OneResult result;
        QVERIFY_EXCEPTION_THROWN(function().handler(ThrowingArguments(), &result, messages),
                                 std::bad_alloc);
        QCOMPARE(messages.useCount(), 1L);
        QVERIFY(!result.buffer);
    }

    void messageHandlerIsReleasedWhenTheResultThrows()
    {
        const YRef<MessageHandler> messages(std::make_unique<Messages>());
        ThrowingResult result;
        QVERIFY_EXCEPTION_THROWN(function().handler(OneString("x"), &result, messages),
                                 std::bad_alloc);
        QCOMPARE(messages.useCount(), 1L);
    }

    void longArgument()
    {
        const std::string path(4'000'000, ' ');
        const auto result = host::callFunction("PathToURI", {path}, {});
        QCOMPARE(result.front().size(), 8 + 3 * path.size());
    }
};

QTEST_GUILESS_MAIN(tst_PathToURI)
#include "tst_PathToURI.moc"
