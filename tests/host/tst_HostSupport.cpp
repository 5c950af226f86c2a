#include "support/Files.h"
#include "support/RefusedWrite.h"
#include "support/StdString.h"

#include <HostSupport/Options.h>
#include <HostSupport/SystemPaths.h>
#include <HostSupport/YString.h>
#include <HostSupport/host.h>
#include <HostSupport/saving.h>

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace std::string_literals;

namespace {

using Texts = std::vector<std::string>;

struct Object
{
    Object() { ++alive; }
    virtual ~Object() { --alive; }
    static inline int alive = 0;
};

constexpr argType numberAndString[] = {ARG_NUMBER, ARG_STRING};

/// Gives back its arguments as two strings.
FUNC_ERROR echo(const FuncArgsMinimal& args, FuncResultMinimal* result, YRef<MessageHandler>)
{
    const double number = *static_cast<const double*>(args.value(0));
    char** texts = result->allotStrings(2);
    texts[0] = YString(std::to_string(static_cast<int>(number)).c_str()).detach();
    texts[1] = YString(*static_cast<const char* const*>(args.value(1))).detach();
    return FUNC_OK;
}

FUNC_ERROR fail(const FuncArgsMinimal&, FuncResultMinimal*, YRef<MessageHandler>)
{
    return FUNC_FAILED;
}

FUNC_ERROR throwException(const FuncArgsMinimal&, FuncResultMinimal* result, YRef<MessageHandler>)
{
    *result->allotStrings(1) = YString("not lost").detach();
    throw std::logic_error("from the handler");
}

Texts receivedWords;

COMERROR keepWords(int count, char** words, YRef<MessageHandler>, const ScpParseContext& context)
{
    receivedWords.assign(words, words + count);
    receivedWords.push_back(context.source + std::string(":") + std::to_string(context.line));
    return COM_OK;
}

COMERROR failCommand(int, char**, YRef<MessageHandler>, const ScpParseContext&)
{
    return COM_FAILED;
}

template <typename Call>
std::string callError(Call call)
{
    try {
        call();
    } catch (const host::CallError& error) {
        return error.what();
    }
    return "no error";
}

std::string option(const char* name, const char* defaultValue)
{
    YString value;
    sp_ReadOptionsInfo(name, &value, defaultValue);
    return value.c_str();
}

std::string symbol(const char* name)
{
    YString value("something else");
    sp_GetSystemPathSymbolValue(name, &value, false);
    return value.c_str();
}

QByteArray contentOf(const std::string& name)
{
    return zvtest::contentOf(QString::fromStdString(name));
}

} // namespace

class tst_HostSupport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
        host::setOptionsFile(optionsFile());
        receivedWords.clear();
    }

    void cleanup() { host::setRegistrationObserver({}); }

    void stringHoldsText()
    {
        QCOMPARE(YString().c_str(), "");
        QCOMPARE(YString(nullptr).c_str(), "");
        QVERIFY(YString().isEmpty());
        QCOMPARE(YString("abc").c_str(), "abc");
        QCOMPARE(YString("abc").size(), std::size_t(3));
    }

    void stringCopiesAndMoves()
    {
        YString a("a");
        YString b(a);
        a = "changed";
        QCOMPARE(b.c_str(), "a");
        b = a;
        QCOMPARE(b.c_str(), "changed");
        const YString& same = b;
        b = same;
        QCOMPARE(b.c_str(), "changed");
        const YString c(std::move(b));
        QCOMPARE(c.c_str(), "changed");
        b = YString("revived"); // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(b.c_str(), "revived");
    }

    void stringDetachesABufferToFree()
    {
        YString text("abc");
        char* buffer = text.detach();
        QCOMPARE(std::string(buffer), "abc"s);
        QVERIFY(text.isEmpty());
        std::free(buffer);
        buffer = text.detach();
        QCOMPARE(std::string(buffer), ""s);
        std::free(buffer);
    }

    void referenceDeletesWithTheLast()
    {
        YRef<Object> first(std::make_unique<Object>());
        QCOMPARE(first.useCount(), 1L);
        {
            const YRef<Object> second(first); // NOLINT(performance-unnecessary-copy-initialization)
            QCOMPARE(first.useCount(), 2L);
        }
        QCOMPARE(first.useCount(), 1L);
        first = {};
        QCOMPARE(Object::alive, 0);
        QVERIFY(!first);
    }

    void registrationsAreListedInOrderAndTakenBack()
    {
        Texts events;
        host::setRegistrationObserver(
            [&events](const std::string& what) { events.push_back(what); });
        {
            const FuncConstruct z("tst_z", numberAndString, 2, 2, &echo);
            const ComConstruct c("tst_c", &keepWords, 0);
            const FuncConstruct a("tst_a", numberAndString, 1, 1, &echo);
            const MakeOption o("file", 13, "tst_o", "default", OPTION_DEFAULT_CACHING, true);
            const auto functions = host::functions();
            QCOMPARE(functions.size(), std::size_t(2));
            QCOMPARE(functions[0].name, "tst_z"s);
            QCOMPARE(functions[0].arguments, (std::vector{ARG_NUMBER, ARG_STRING}));
            QCOMPARE(functions[0].resultCount, 2);
            QCOMPARE(functions[1].name, "tst_a"s);
        }
        QCOMPARE(events,
                 (Texts{"function tst_z", "command tst_c", "function tst_a", "option tst_o",
                        "~function tst_a", "~function tst_z"}));
        QVERIFY(host::functions().empty());
        QCOMPARE(host::commands().back().name, "tst_c"s);
        const host::OptionInfo o = host::options().back();
        QCOMPARE(o.name, "tst_o"s);
        QCOMPARE(o.defaultValue, "default"s);
        QCOMPARE(o.source, "file"s);
        QCOMPARE(o.line, 13);
        QCOMPARE(o.flag, true);
    }

    void nameThatIsTakenOverStaysWithItsNewOwner()
    {
        auto first = std::make_unique<FuncConstruct>("tst_f", numberAndString, 2, 2, &echo);
        const FuncConstruct second("tst_f", nullptr, 0, 1, &fail);
        QCOMPARE(host::functions().size(), std::size_t(1));
        first.reset();
        QCOMPARE(host::functions().size(), std::size_t(1));
        QVERIFY(host::functions()[0].arguments.empty());
    }

    void functionIsCalled()
    {
        const FuncConstruct f("tst_f", numberAndString, 2, 2, &echo);
        QCOMPARE(host::callFunction("tst_f", {7.0, "text"s}, {}), (Texts{"7", "text"}));
    }

    void wrongCallsNameFunctionAndExpectation()
    {
        const FuncConstruct f("tst_f", numberAndString, 2, 2, &echo);
        const FuncConstruct none("tst_none", nullptr, 0, 1, &fail);
        QCOMPARE(callError([] { host::callFunction("tst_missing", {}, {}); }),
                 "Unknown function: tst_missing"s);
        QCOMPARE(callError([] { host::callFunction("tst_f", {1.0}, {}); }),
                 "tst_f expects 2 arguments (number, string), not 1"s);
        QCOMPARE(callError([] {
                     host::callFunction("tst_f", {1.0, 2.0}, {});
                 }),
                 "tst_f expects 2 arguments (number, string); argument 2 is a number"s);
        QCOMPARE(callError([] {
                     host::callFunction("tst_f", {"x"s, "y"s}, {});
                 }),
                 "tst_f expects 2 arguments (number, string); argument 1 is a string"s);
        QCOMPARE(callError([] { host::callFunction("tst_none", {1.0}, {}); }),
                 "tst_none expects 0 arguments, not 1"s);
        QCOMPARE(callError([] { host::callFunction("tst_none", {}, {}); }),
                 "tst_none failed with error 1"s);
    }

    void whatAHandlerThrowsPassesThrough()
    {
        const FuncConstruct f("tst_f", nullptr, 0, 1, &throwException);
        QVERIFY_EXCEPTION_THROWN(host::callFunction("tst_f", {}, {}), std::logic_error);
    }

    void commandGetsItsNameAndWords()
    {
        const ComConstruct c("tst_c", &keepWords, 0);
        host::callCommand("tst_c", {"one", "two words"}, {}, {"script", 3});
        QCOMPARE(receivedWords, (Texts{"tst_c", "one", "two words", "script:3"}));
    }

    void wrongCommandsAreErrors()
    {
        const ComConstruct c("tst_failing", &failCommand, 0);
        QCOMPARE(callError([] {
                     host::callCommand("tst_missing", {}, {}, {"", 0});
                 }),
                 "Unknown command: tst_missing"s);
        QCOMPARE(callError([] {
                     host::callCommand("tst_failing", {}, {}, {"", 0});
                 }),
                 "tst_failing failed with error 1"s);
    }

    void optionIsWhatWasSetElseDeclaredElseGiven()
    {
        QCOMPARE(option("tst_unknown", "given"), "given"s);
        const MakeOption declared("file", 1, "tst_declared", "#2D7D9A", OPTION_DEFAULT_CACHING,
                                  true);
        QCOMPARE(option("tst_declared", "given"), "#2D7D9A"s);
        host::writeOption("tst_declared", "set");
        QCOMPARE(option("tst_declared", "given"), "set"s);
        host::resetOption("tst_declared");
        QCOMPARE(option("tst_declared", "given"), "#2D7D9A"s);
        host::writeOption("tst_unknown", "");
        QCOMPARE(option("tst_unknown", "given"), ""s);
    }

    void optionReadTellsWhetherItIsKnown()
    {
        YString both;
        QCOMPARE(sp_ReadOptionsInfo("tst_unheard", &both, both), 1);
        QVERIFY(both.isEmpty());
        const MakeOption declared("file", 1, "tst_heard", "x", OPTION_DEFAULT_CACHING, true);
        QCOMPARE(sp_ReadOptionsInfo("tst_heard", &both, both), 0);
        QCOMPARE(both.c_str(), "x");
    }

    void optionKeepsAnyText_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::newRow("colour") << "#2D7D9A"s;
        QTest::newRow("comma") << "a, b,c"s;
        QTest::newRow("semicolon, quotes, backslash") << "a;b\"c\\d"s;
        QTest::newRow("not ASCII") << "ä€\xF0\x9D\x84\x9E"s;
        QTest::newRow("lines") << "a\nb"s;
        QTest::newRow("blanks") << "  a  "s;
    }

    void optionKeepsAnyText()
    {
        QFETCH(std::string, text);
        host::writeOption("tst_text", text);
        QCOMPARE(option("tst_text", ""), text);
    }

    void optionsFileThatCannotBeWrittenIsAnError()
    {
        host::setOptionsFile(m_directory->path().toStdString());
        QVERIFY_EXCEPTION_THROWN(host::writeOption("tst_x", "x"), std::runtime_error);
    }

    void fullDiskLeavesTheOptions_data()
    {
        QTest::addColumn<int>("others");
        QTest::newRow("one large option") << 0;
        // Each of them is shorter than the blocks in which files are written.
        QTest::newRow("many options") << 500;
    }

    void fullDiskLeavesTheOptions()
    {
        QFETCH(int, others);
        host::writeOption("tst_kept", "kept");
        QSettings settings(QString::fromStdString(optionsFile()), host::settingsFormat());
        for (int i = 0; i < others; ++i)
            settings.setValue(QString("tst_%1").arg(i), QString(70, QLatin1Char('x')));
        settings.sync();
        const QByteArray before = contentOf(optionsFile());
        {
            const zvtest::RefusedWrite refused;
            QVERIFY_EXCEPTION_THROWN(host::writeOption("tst_large", std::string(40'000, 'y')),
                                     std::runtime_error);
        }
        QCOMPARE(contentOf(optionsFile()), before);
    }

    void settingsThatCannotBeReadAreNotReplaced()
    {
#if defined(Q_OS_LINUX)
        host::writeOption("tst_kept", "kept");
        const QByteArray before = contentOf(optionsFile());
        const QByteArray temporary = qgetenv("TMPDIR");
        // Without a place for temporary files nothing can be read.
        qputenv("TMPDIR", "/proc");
        const QString copy = m_directory->filePath("copy.ini");
        QVERIFY(QFile::copy(QString::fromStdString(optionsFile()), copy));
        QSettings settings(copy, host::settingsFormat());
        qputenv("TMPDIR", temporary);
        settings.setValue("tst_other", 1);
        settings.sync();
        QVERIFY(settings.status() != QSettings::NoError);
        QCOMPARE(contentOf(copy.toStdString()), before);
#else
        QSKIP("The folder of temporary files can't be chosen here");
#endif
    }

    void settingsAreIniFiles()
    {
        const QString name = m_directory->filePath("some.ini");
        const QVariantMap expected = {
            {"plain", "text"},
            {"at", "@text"},
            {"lines", "a\n\"b\"; \\ = % \u00E4\u20AC"},
            {"nothing", QString()},
            {"Group/bytes", QByteArray("\0\n[x]\xFF", 6)},
            {"Group/list", QStringList{"a, b", QString()}},
            {"Group/within/number", "7"},
            {"General/odd", "x"},
        };
        {
            QSettings settings(name, host::settingsFormat());
            for (auto entry = expected.begin(); entry != expected.end(); ++entry)
                settings.setValue(entry.key(), entry.value());
            settings.sync();
            QCOMPARE(settings.status(), QSettings::NoError);
        }
        // Qt's own format reads it, and so does another object after the file has changed.
        const QString copy = m_directory->filePath("copy.ini");
        QVERIFY(QFile::copy(name, copy));
        QSettings plain(copy, QSettings::IniFormat);
        plain.setIniCodec("UTF-8");
        const QString again = m_directory->filePath("again.ini");
        QVERIFY(QFile::copy(name, again));
        const QSettings settings(again, host::settingsFormat());
        // Their order is that of the platform.
        const auto sorted = [](QStringList keys) {
            keys.sort();
            return keys;
        };
        QCOMPARE(sorted(plain.allKeys()), QStringList(expected.keys()));
        QCOMPARE(sorted(settings.allKeys()), QStringList(expected.keys()));
        for (auto entry = expected.begin(); entry != expected.end(); ++entry) {
            QCOMPARE(plain.value(entry.key()), entry.value());
            QCOMPARE(settings.value(entry.key()), entry.value());
        }
    }

    void keysMayDifferInCase()
    {
        const QString name = m_directory->filePath("some.ini");
        QSettings settings(name, host::settingsFormat());
        settings.setValue("Group/key", 1);
        settings.setValue("Group/KEY", 2);
        settings.setValue("group/key", 3);
        settings.sync();
        QCOMPARE(settings.status(), QSettings::NoError);
        QCOMPARE(settings.value("group/key").toInt(), 3);
        host::writeOption("tst_case", "1");
        host::writeOption("TST_CASE", "2");
        QCOMPARE(option("TST_CASE", ""), "2"s);
    }

    void settingsThatAreLockedAreToldAsFailed()
    {
        const QString name = m_directory->filePath("locked.ini");
        QSettings settings(name, host::settingsFormat());
        QVERIFY(host::write(settings));
        settings.setValue("a", 1);
        {
            QLockFile other(name + ".lock");
            other.setStaleLockTime(0);
            QVERIFY(other.lock());
            QVERIFY(!host::write(settings));
            QVERIFY(!QFile::exists(name));
        }
        QVERIFY(host::write(settings));
        QCOMPARE(contentOf(name.toStdString()).replace("\r\n", "\n"),
                 QByteArray("[General]\na=1\n"));
    }

    void settingsMayBecomeEmpty()
    {
        const QString name = m_directory->filePath("some.ini");
        QSettings settings(name, host::settingsFormat());
        settings.setValue("a", 1);
        settings.sync();
        settings.remove("a");
        settings.sync();
        QCOMPARE(settings.status(), QSettings::NoError);
        QCOMPARE(contentOf(name.toStdString()), QByteArray());
    }

    void fileIsSavedWholeOrNotAtAll()
    {
        const std::string name = m_directory->filePath("\u00E4.txt").toStdString();
        const std::string content(3 * zvtest::RefusedWrite::limit, 'x');
        host::saveFile(name, "old");
        QCOMPARE(contentOf(name), QByteArray("old"));
        {
            const zvtest::RefusedWrite refused;
            QVERIFY_EXCEPTION_THROWN(host::saveFile(name, content), std::runtime_error);
        }
        QCOMPARE(contentOf(name), QByteArray("old"));
        host::saveFile(name, content);
        QCOMPARE(contentOf(name), QByteArray::fromStdString(content));
        try {
            host::saveFile(m_directory->path().toStdString() + "/missing/a", "x");
            QFAIL("a missing folder was written to");
        } catch (const std::runtime_error& error) {
            QVERIFY(*error.what() != '\0');
        }
        QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void damagedOptionsFileGivesDefaults()
    {
        QVERIFY(zvtest::writeTo(QString::fromStdString(optionsFile()),
                                QByteArrayLiteral("[[[\x00\xFF=\n%ZZ\ntst")));
        QCOMPARE(option("tst_damaged", "given"), "given"s);
    }

    void pathSymbolsHaveDefaultsAndCanBeSet()
    {
        for (const char* name : {"ZVAPPDATAPATH", "ZVDOCSPATH", "COMMON_APPDATAPATH"}) {
            QVERIFY(!symbol(name).empty());
            host::setPathSymbol(name, std::string("c:/x/") + name);
            QCOMPARE(symbol(name), std::string("c:/x/") + name);
        }
        QVERIFY(symbol("ANOTHER").empty());
        YString value;
        QCOMPARE(sp_GetSystemPathSymbolValue("ANOTHER", &value, false), 1);
        QCOMPARE(sp_GetSystemPathSymbolValue("ZVDOCSPATH", &value, false), 0);
    }

    void productFolderNameCanBeSet()
    {
        QCOMPARE(sp_GetProductFolderName().c_str(), "zvhost");
        host::setProductFolderName("Product");
        QCOMPARE(sp_GetProductFolderName().c_str(), "Product");
        host::setProductFolderName("zvhost");
    }

private:
    std::string optionsFile() const
    {
        return m_directory->filePath("options.ini").toStdString();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_HostSupport)
#include "tst_HostSupport.moc"
