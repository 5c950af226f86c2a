#include "support/Module.h"
#include "support/StdString.h"

#include <HostSupport/host.h>

#include <QFile>
#include <QLibrary>
#include <QMetaType>
#include <QTest>

#include <string>
#include <vector>

using namespace std::string_literals;

/// What is registered while a library loads, and what is taken back while it unloads, in a process
/// that loads and unloads it as a host does.
class tst_LoadOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_events.clear();
        host::setRegistrationObserver(
            [this](const std::string& what) { m_events.push_back(what); });
    }

    void cleanup() { host::setRegistrationObserver({}); }

    // The first, since Qt never forgets a type.
    void typeOfFiltersIsRegisteredBehindAllThatTheHostSees()
    {
        const auto isKnown = [] { return QMetaType::type("ModelIndexVectorPtr") != 0; };
        QLibrary library(ZVUTIL_FILE);
        std::vector<bool> known;
        host::setRegistrationObserver([&](const std::string&) { known.push_back(isKnown()); });
        QVERIFY(library.load());
        QCOMPARE(known, std::vector<bool>(8, false));
        QVERIFY(isKnown());
        QCOMPARE(QMetaType::type("ModelIndexVectorPtr"),
                 QMetaType::type("AbstractBackgroundListFilter::ModelIndexVectorPtr"));
        QVERIFY(library.unload());
    }

    void sourcesRegisterInTheOrderOfTheirList()
    {
        QLibrary fixture(FIXTURE_FILE);
        QVERIFY2(fixture.load(), qPrintable(fixture.errorString()));
        QCOMPARE(
            m_events,
            (Events{"function middle", "function last", "function first", "function another"}));
        m_events.clear();
        QVERIFY(fixture.unload());
        QCOMPARE(
            m_events,
            (Events{"~function another", "~function first", "~function last", "~function middle"}));
    }

    void libraryRegistersOnLoadAndTakesBackOnUnload()
    {
        QLibrary library(ZVUTIL_FILE);
        QVERIFY(!zvtest::isInProcess(library.fileName()));
        QVERIFY(!isCallable());
        // Twice, since a library that stayed in the process would not register again.
        for (int round = 0; round < 2; ++round) {
            m_events.clear();
            QVERIFY2(library.load(), qPrintable(library.errorString()));
            QVERIFY(zvtest::isInProcess(library.fileName()));
            QCOMPARE(m_events,
                     (Events{"function PathToURI", "command _se", "command _s1", "command _s2",
                             "option ZvStyle", "command _modifystyle", "command _s3",
                             "option ZvStyleAccent"}));
            QVERIFY(isCallable());

            m_events.clear();
            QVERIFY(library.unload());
            QCOMPARE(m_events, (Events{"~function PathToURI"}));
            QVERIFY(!isCallable());
            QVERIFY(!zvtest::isInProcess(library.fileName()));
        }
    }

    void pathTypeIsRegisteredBehindTheFunctionAndItsConverterGoesBefore()
    {
        QLibrary library(ZVUTIL_FILE);
        std::vector<bool> convertible;
        host::setRegistrationObserver(
            [&convertible](const std::string&) { convertible.push_back(hasPathConverter()); });
        QVERIFY(library.load());
        QVERIFY(hasPathConverter());
        QCOMPARE(QMetaType::type("ZvFilePath"), QMetaType::type("zvutil::ZvFilePath"));
        QVERIFY(library.unload());
        QVERIFY(!hasPathConverter());
        QCOMPARE(convertible,
                 (std::vector{false, true, true, true, true, true, true, true, false}));
    }

    void resourcesComeLastAndGoFirst()
    {
        const auto hasResources = [] { return QFile::exists(":/libzvutil/style"); };
        QLibrary library(ZVUTIL_FILE);
        std::vector<bool> there;
        host::setRegistrationObserver([&](const std::string&) { there.push_back(hasResources()); });
        QVERIFY(library.load());
        QVERIFY(hasResources());
        QVERIFY(library.unload());
        QVERIFY(!hasResources());
        QCOMPARE(there, std::vector<bool>(9, false));
    }

    void functionIsCallableFromItsRegistrationToItsEnd()
    {
        std::vector<bool> callable;
        host::setRegistrationObserver(
            [&callable](const std::string&) { callable.push_back(isCallable()); });
        QLibrary library(ZVUTIL_FILE);
        QVERIFY(library.load());
        QVERIFY(library.unload());
        QCOMPARE(callable, (std::vector{true, true, true, true, true, true, true, true, false}));
    }

private:
    using Events = std::vector<std::string>;

    static bool hasPathConverter()
    {
        const int id = QMetaType::type("zvutil::ZvFilePath");
        return QMetaType::hasRegisteredConverterFunction(id, QMetaType::QString);
    }

    static bool isCallable()
    {
        try {
            return host::callFunction("PathToURI", {"a b"s}, {}).front() == "file:///a%20b";
        } catch (const host::CallError&) {
            return false;
        }
    }

    Events m_events;
};

QTEST_GUILESS_MAIN(tst_LoadOrder)
#include "tst_LoadOrder.moc"
