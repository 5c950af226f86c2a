// The examples of modules, loaded by the host.

#include "support/Files.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Outcome
{
    int status = -1;
    QString output;
    QString errors;
};

} // namespace

class tst_module_examples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_user = std::make_unique<QTemporaryDir>();
        QVERIFY(m_user->isValid());
    }

    void theFunctionFindsTheNearestValue_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("result");
        QTest::newRow("below") << "NearestResistor(4600, \"E24\")"
                               << "4700";
        QTest::newRow("coarse") << "NearestResistor(4000, \"E6\")"
                                << "4700";
        QTest::newRow("next decade") << "NearestResistor(98, \"E12\")"
                                     << "100";
        QTest::newRow("small") << "NearestResistor(0.33, \"E12\")"
                               << "0.33";
    }

    void theFunctionFindsTheNearestValue()
    {
        QFETCH(QString, call);
        QFETCH(QString, result);
        const Outcome outcome = run({"--load", RESISTORS_FILE, "-e", "print(" + call + ")"});
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QCOMPARE(outcome.output, result + '\n');
    }

    void whatIsWrongIsTold_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("message");
        QTest::newRow("series") << "NearestResistor(1, \"E1\")"
                                << "There is no series E1";
        QTest::newRow("value") << "NearestResistor(0, \"E6\")"
                               << "The resistance must be positive";
        QTest::newRow("nothing") << "NearestResistor(0/0, \"E6\")"
                                 << "The resistance must be positive";
        QTest::newRow("command") << "resistors(\"E1\")"
                                 << "There is no series E1";
    }

    void whatIsWrongIsTold()
    {
        QFETCH(QString, script);
        QFETCH(QString, message);
        const Outcome outcome = run({"--load", RESISTORS_FILE, "-e", script});
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
    }

    void commandAndOptionAreThere()
    {
        const Outcome list = run({"--load", RESISTORS_FILE, "--list"});
        QVERIFY(list.output.contains("function NearestResistor(number, string)\n"));
        QVERIFY(list.output.contains("command  resistors\n"));
        QVERIFY(list.output.contains("option   ResistorSeries = \"E24\"\n"));
        const Outcome series = run({"--load", RESISTORS_FILE, "-e", "resistors()"});
        QVERIFY2(series.errors.contains("E24: 1.0 1.1 "), qPrintable(series.errors));
        QVERIFY(series.errors.endsWith(" 8.2 9.1\n"));
        const Outcome coarse = run({"--load", RESISTORS_FILE, "-e", "resistors(\"E6\")"});
        QVERIFY(coarse.errors.endsWith("E6: 1.0 1.5 2.2 3.3 4.7 6.8\n"));
    }

    void theWorkbenchOpensTheModulesDocuments()
    {
        const QString file = m_user->filePath("a.checklist");
        QVERIFY(zvtest::writeTo(file,
                                "<checklist points=\"1\"><point text=\"Fuse\" done=\"true\"/>"
                                "</checklist>"));
        const QString picture = m_user->filePath("picture.png");
        const Outcome outcome =
            run({"--load", CHECKLISTS_FILE, "--screenshot", picture, "--new", "checklist", file});
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QVERIFY(!QImage(picture).isNull());
        // Without the module the file is a script, and a wrong one.
        QCOMPARE(run({file}).status, 1);
        QVERIFY(run({"--screenshot", picture, "--new", "checklist"})
                    .errors.contains("There is no document type “checklist”"));
    }

private:
    Outcome run(const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            environment.insert(QLatin1String(variable), m_user->path());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(ZVHOST_FILE, arguments);
        Outcome outcome;
        if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
            return outcome;
        outcome.status = process.exitCode();
        outcome.output = QString::fromUtf8(process.readAllStandardOutput()).remove('\r');
        outcome.errors = QString::fromUtf8(process.readAllStandardError()).remove('\r');
        return outcome;
    }

    std::unique_ptr<QTemporaryDir> m_user;
};

QTEST_GUILESS_MAIN(tst_module_examples)

#include "tst_module_examples.moc"
