// What the library asks the host for the standard paths. A program of its own, since it answers in the
// host's place.

#include <zvutil/ZvFilePath.h>

#include "support/StdString.h"

#include <HostSupport/SystemPaths.h>
#include <HostSupport/YString.h>

#include <QTest>

#include <string>
#include <vector>

using zvutil::StandardPath;
using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

using Lines = std::vector<std::string>;

/// The calls, in their order.
Lines calls;
/// What the host reports of a symbol, beside its value.
int reported = 0;

} // namespace

Q_DECLARE_METATYPE(Lines)

// Both stand before the host's own.

int sp_GetSystemPathSymbolValue(const char* symbol, YString* value, bool create)
{
    calls.push_back(symbol + (create ? " true"s : " false"s) + " <" + value->c_str() + ">");
    *value = "C:/value";
    return reported;
}

YString sp_GetProductFolderName()
{
    calls.push_back("product");
    return "folder";
}

class tst_ZvFilePath_host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        calls.clear();
        reported = 0;
    }

    void asksForOneSymbol_data()
    {
        QTest::addColumn<int>("path");
        QTest::addColumn<Lines>("expected");
        QTest::addColumn<QString>("result");
        const QString value = "C:\\value";
        QTest::newRow("application data")
            << int(StandardPath::AppData) << Lines{"ZVAPPDATAPATH false <>"} << value;
        QTest::newRow("documents")
            << int(StandardPath::Documents) << Lines{"ZVDOCSPATH false <>"} << value;
        QTest::newRow("common data")
            << int(StandardPath::CommonAppData) << Lines{"COMMON_APPDATAPATH false <>", "product"}
            << value + "\\Corvane Technologies\\folder";
        QTest::newRow("beyond the last") << 3 << Lines() << QString();
        QTest::newRow("before the first") << -1 << Lines() << QString();
    }

    void asksForOneSymbol()
    {
        QFETCH(int, path);
        QFETCH(Lines, expected);
        QFETCH(QString, result);
        QCOMPARE(ZvFilePath::Path(StandardPath(path)).toQString(), result);
        QCOMPARE(calls, expected);
        calls.clear();
        QCOMPARE(ZvFilePath::Directory(StandardPath(path)).toQString(), result);
        QCOMPARE(calls, expected);
    }

    void whatTheHostReportsIsNotLookedAt()
    {
        for (const int other : {1, -1, 7}) {
            reported = other;
            QCOMPARE(ZvFilePath::Path(StandardPath::Documents).toQString(), QString("C:\\value"));
            QCOMPARE(ZvFilePath::Path(StandardPath::CommonAppData).toQString(),
                     QString("C:\\value\\Corvane Technologies\\folder"));
        }
    }

    void textsAreNoBusinessOfTheHosts()
    {
        for (const char* const text : {"", "a", "a\\", "C:", "ZVDOCSPATH"}) {
            ZvFilePath path = ZvFilePath::Directory(text);
            path /= ZvFilePath::Directory(std::string(text));
            path = path.lexicallyRelative(ZvFilePath(text));
        }
        QCOMPARE(calls, Lines());
    }
};

QTEST_APPLESS_MAIN(tst_ZvFilePath_host)
#include "tst_ZvFilePath_host.moc"
