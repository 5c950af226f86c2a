// The style manager starts with its built-in styles, and leaves the user's files alone, whichever call
// on a file fails. Each start has a process of its own.

#include "ForkedRun.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/StyleHost.h"

#include <QApplication>
#include <QTest>

using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using zvtest::contentOf;
using zvtest::ForkedRun;

namespace {

/// What a start has found.
enum Start {
    AllStyles,
    BuiltInStyles,
    Wrong,
};

int start()
{
    int argc = 1;
    char name[] = "start";
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    const QStringList names = ZvStyleManager::AvailableStyleNames();
    const bool isBuiltIn = names.mid(0, 2) == QStringList{"Light", "Dark"};
    if (!isBuiltIn || ZvStyleManager::CurrentStyle().name().toQString() != "Light")
        return Wrong;
    return names.size() == 3 ? AllStyles : BuiltInStyles;
}

} // namespace

class tst_faults_style_start : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        const ForkedRun made = zvtest::runInChild(m_host.path(), {}, [this] {
            ZvStyleLibrary library;
            library.update(libzvutil::ZvStyle("Mine"));
            return m_host.write(m_host.libraryFile(), {})
                ? (library.save(m_host.libraryFile().toStdWString()), 0)
                : 1;
        });
        QCOMPARE(made.result, 0);
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void eachCall_data() { zvtest::addFaultKinds(); }

    void eachCall()
    {
        QFETCH(int, kind);
        const zvtest::FaultKind& fault = zvtest::faultKind(kind);
        const QByteArray library = contentOf(m_host.libraryFile());
        QVERIFY(library.contains("Mine"));
        ++zvtest::Tally::all().operations;
        ForkedRun run;
        for (int number = 1; number == 1 || run.calls >= number - 1; ++number) {
            run = zvtest::runInChild(m_host.path(),
                                     {number, fault.action, fault.error, fault.lasts}, &start);
            const bool isWhole = run.call.isEmpty() || fault.isHarmless;
            QVERIFY2(run.result == AllStyles || (run.result == BuiltInStyles && !isWhole),
                     qPrintable(QString("call %1 (%2): result %3")
                                    .arg(number)
                                    .arg(QString::fromLatin1(run.call))
                                    .arg(run.result)));
            QCOMPARE(contentOf(m_host.libraryFile()), library);
            zvtest::Tally::all().faults += run.call.isEmpty() ? 0 : 1;
        }
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_APPLESS_MAIN(tst_faults_style_start)
#include "tst_faults_style_start.moc"
