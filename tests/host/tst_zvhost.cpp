#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Outcome
{
    int status = -1;
    QString output;
    QString errors;
};

Outcome run(const QStringList& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
            const QString& program = ZVHOST_FILE, const QString& folder = QString())
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Outcome outcome;
    if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
        return outcome;
    outcome.status = process.exitCode();
    outcome.output = QString::fromUtf8(process.readAllStandardOutput()).remove(QLatin1Char('\r'));
    outcome.errors = QString::fromUtf8(process.readAllStandardError()).remove(QLatin1Char('\r'));
    return outcome;
}

/// That of a user who has never used the host before, but in other processes with this.
QProcessEnvironment environmentOf(const QTemporaryDir& user)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        environment.insert(QLatin1String(variable), user.path());
    return environment;
}

Outcome runFor(const QTemporaryDir& user, const QStringList& arguments)
{
    return run(arguments, environmentOf(user));
}

Outcome runScript(const QString& script)
{
    return run({"--load", MODULE_FILE, "-e", script});
}

/// What Windows does for a program: 2 opens no console, 3 has one. -1 if the file isn't a program.
int subsystemOf(const QString& program)
{
    const QByteArray content = zvtest::contentOf(program);
    const auto numberAt = [&content](int position) {
        return position >= 0 && position + 1 < content.size()
            ? static_cast<uchar>(content[position])
                + 256 * static_cast<uchar>(content[position + 1])
            : -1;
    };
    const int header = numberAt(0x3c);
    return content.mid(header, 4) == QByteArray("PE\0\0", 4) ? numberAt(header + 0x5c) : -1;
}

} // namespace

class tst_zvhost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersPathToURI()
    {
        const Outcome outcome =
            run({"-e", "print(PathToURI(\"C:\\\\Users\\\\me\\\\my file.txt\"))"});
        QCOMPARE(outcome.output, QString("file:///C:/Users/me/my%20file.txt\n"));
        QCOMPARE(outcome.status, 0);
    }

    void runsTheCommandsOfStyles()
    {
        const QTemporaryDir user;
        // Without a display nobody could close the windows, so the host doesn't wait for that.
        const Outcome outcome =
            runFor(user, {"-e", "_se(); _s1(); _s2(); _modifystyle(); _s3(); print('done')"});
        QCOMPARE(outcome.output, QString("done\n"));
        QCOMPARE(outcome.status, 0);
    }

    void prints_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("output");
        QTest::newRow("words") << "print('a', 1, true)"
                               << "a 1 true\n";
        QTest::newRow("nothing") << "print()"
                                 << "\n";
        QTest::newRow("not ASCII") << "print('ä€')"
                                   << "ä€\n";
        QTest::newRow("result of two") << "print(Schemes('http://x', 2))"
                                       << "http,http\n";
        QTest::newRow("result of one") << "print(Schemes('https://x', 1).length)"
                                       << "5\n";
        QTest::newRow("result of none") << "print(Schemes('https://x', 0).length)"
                                        << "0\n";
        QTest::newRow("command with words") << "tell()"
                                            << "tell in command line\n";
        QTest::newRow("exception can be caught") << "try { Throw() } catch (e) { print(e.message) }"
                                                 << "thrown by the module\n";
        QTest::newRow("comment at the end") << "print('a') // b"
                                            << "a\n";
        QTest::newRow("objects") << "print({a: 1, b: [2, 'x']}, [1, 2], [{c: 3}], null)"
                                 << "{\"a\":1,\"b\":[2,\"x\"]} 1,2 [{\"c\":3}] null\n";
        QTest::newRow("object of a type of its own")
            << "function T() {}\nT.prototype.toString = function() { return 'T!'; };\nprint(new T)"
            << "T!\n";
        QTest::newRow("object in a circle") << "var a = {}; a.a = a; print(a)"
                                            << "[object Object]\n";
        QTest::newRow("promise")
            << "Promise.resolve(1).then(v => v + 1).then(v => print('then', v)); print('first')"
            << "first\nthen 2\n";
        QTest::newRow("strict") << "'use strict'; print((function() { return !this })())"
                                << "true\n";
    }

    void prints()
    {
        QFETCH(QString, script);
        QFETCH(QString, output);
        const Outcome outcome = runScript(script);
        QCOMPARE(outcome.output, output);
        QCOMPARE(outcome.status, 0);
    }

    void fails_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("message");
        QTest::newRow("thrown error") << "\n\nthrow new Error('no way')"
                                      << "command line:3: Error: no way";
        QTest::newRow("thrown value") << "throw 3"
                                      << "command line: uncaught exception: 3";
        QTest::newRow("stack overflow")
            << "\nfunction f() { f(); }\nf();"
            << "command line:2: RangeError: Maximum call stack size exceeded.";
        QTest::newRow("calls") << "function g() {\n  missing();\n}\nfunction f() { g(); }\nf();"
                               << "command line:2: ReferenceError: missing is not defined\n"
                                  "    at g, line 2\n    at f, line 4\n    at line 5\n";
        QTest::newRow("thrown undefined") << "throw undefined"
                                          << "command line: uncaught exception: undefined";
        QTest::newRow("syntax") << "\nx = = 3"
                                << "command line:2: SyntaxError";
        QTest::newRow("unknown name") << "Unknown(1)"
                                      << "command line:1: ReferenceError: Unknown is not defined";
        QTest::newRow("number for string") << "function f() {\n  return PathToURI(1);\n}\nf();"
                                           << "command line:2: Error: PathToURI expects 1 argument "
                                              "(string); argument 1 is a number";
        QTest::newRow("object for string")
            << "PathToURI({})"
            << "command line:1: Error: PathToURI: argument 1 is neither a string nor a number";
        QTest::newRow("no argument")
            << "PathToURI()"
            << "command line:1: Error: PathToURI expects 1 argument (string), not 0";
        QTest::newRow("two arguments")
            << "PathToURI('a', 'b')"
            << "command line:1: Error: PathToURI expects 1 argument (string), not 2";
        QTest::newRow("handler throws") << "Throw()"
                                        << "command line:1: Error: thrown by the module";
        QTest::newRow("command fails") << "failing()"
                                       << "command line:1: Error: failing failed with error 1";
    }

    void fails()
    {
        QFETCH(QString, script);
        QFETCH(QString, message);
        const Outcome outcome = runScript(script + "\nprint('not reached')");
        QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.status, 1);
    }

    void messagesOfACommandGoToStandardError()
    {
        const Outcome outcome = runScript("tell('one', 'two words')");
        QVERIFY2(outcome.errors.contains("one\ntwo words\n"), qPrintable(outcome.errors));
    }

    void runsAScriptWithArguments()
    {
        const QTemporaryDir directory;
        // The name is that of a document of the workbench, and the first line is for a shell.
        const QString script = write(
            directory, "a.zvscr",
            "#!/usr/bin/env zvhost\nprint(scriptArguments.length, scriptArguments.join('|'))\n");
        const Outcome outcome = run({"--run", script, "one", "--list", "-e", "two words", "ж"});
        QCOMPARE(outcome.output, QString("5 one|--list|-e|two words|ж\n"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(run({"--run=" + script}).output, QString("0 \n"));
        const QString failing = write(directory, "b.zvscr", "#!zvhost\nmissing()\n");
        const Outcome failed = run({"--run", failing});
        QVERIFY2(failed.errors.contains(QDir::toNativeSeparators(failing) + ":2: "),
                 qPrintable(failed.errors));
        QCOMPARE(failed.status, 1);
    }

    void runsTheStandardInput()
    {
        QProcess process;
        process.start(ZVHOST_FILE, {"--run", "-", "x"});
        process.write("print(scriptArguments[0])\nmissing()\n");
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(60'000));
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()).remove('\r'), QString("x\n"));
        const QString errors = QString::fromUtf8(process.readAllStandardError());
        QVERIFY2(errors.contains("standard input:2: ReferenceError"), qPrintable(errors));
        QCOMPARE(process.exitCode(), 1);
    }

    void runsFilesInTurnAndStopsAtTheFirstError()
    {
        QTemporaryDir directory;
        const QString good = write(directory, "good.js", "print('good')\n");
        const QString bad = write(directory, "bad.js", "print('bad')\n\nnothing.here\n");
        const Outcome outcome = run({good, bad, good});
        QCOMPARE(outcome.output, QString("good\nbad\n"));
        QVERIFY2(outcome.errors.contains(QDir::toNativeSeparators(bad) + ":3: "),
                 qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void takesNamesBeyondTheCodePage_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("options");
        for (const char* const program : {ZVHOST_FILE, WINDOWED_FILE}) {
            const QByteArray name = QFileInfo(program).fileName().toLatin1();
            QTest::addRow("%s", name.constData()) << program << QStringList();
            // Qt looks at the other arguments once more if one of them was changed.
            QTest::addRow("%s and a style", name.constData())
                << program << QStringList{"--style=Dark", "--screenshot"};
        }
    }

    void takesNamesBeyondTheCodePage()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, options);
        const QTemporaryDir folder;
        QStringList arguments = options;
        if (!options.isEmpty())
            arguments.append(folder.filePath("Ω 画面.png"));
        const QString script = write(folder, "Ω ж 日本.js", "print('日本')\nmissing()\n");
        arguments += {"-e", "print('ж')", script};
        const Outcome outcome = run(arguments, QProcessEnvironment::systemEnvironment(), program);
        QCOMPARE(outcome.output, QString("ж\n日本\n"));
        QVERIFY2(outcome.errors.contains(QDir::toNativeSeparators(script) + ":2: "),
                 qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void onlyTheProgramForScriptsHasAConsole()
    {
#if defined(Q_OS_WIN)
        QCOMPARE(subsystemOf(ZVHOST_FILE), 3);
        QCOMPARE(subsystemOf(WINDOWED_FILE), 2);
#else
        QCOMPARE(subsystemOf(ZVHOST_FILE), -1);
        QSKIP("Programs know nothing of consoles on this platform");
#endif
    }

    void startsWithoutStandardOutput()
    {
        const QTemporaryDir user;
        const QString picture = user.filePath("picture.png");
        QProcess process;
        process.setProcessEnvironment(environmentOf(user));
        process.setProgram(WINDOWED_FILE);
        process.setArguments({"--screenshot", picture});
        QVERIFY(process.startDetached());
        QTRY_VERIFY_WITH_TIMEOUT(!QImage(picture).isNull(), 120'000);
    }

    void missingFilesAreErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        const QString missing = "/no/such/file";
        QTest::newRow("script") << QStringList{missing};
        QTest::newRow("library")
            << (QString("--library=%1 --list").arg(missing)).split(QLatin1Char(' '));
        QTest::newRow("module") << QString("--load=%1 --list").arg(missing).split(QLatin1Char(' '));
    }

    void missingFilesAreErrors()
    {
        QFETCH(QStringList, arguments);
        const Outcome outcome = run(arguments);
        QVERIFY2(outcome.errors.contains(QDir::toNativeSeparators("/no/such/file")),
                 qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void listsWhatIsRegistered()
    {
        const Outcome outcome = run({"--load", MODULE_FILE, "--list"});
        QCOMPARE(outcome.output,
                 QString("function PathToURI(string)\n"
                         "function Schemes(string, number)\n"
                         "function Throw()\n"
                         "command  _se\n"
                         "command  _s1\n"
                         "command  _s2\n"
                         "command  _modifystyle\n"
                         "command  _s3\n"
                         "command  tell\n"
                         "command  failing\n"
                         "option   ZvStyle = \"Light\"\n"
                         "option   ZvStyleAccent = \"#2D7D9A\"\n"
                         "option   ModuleOption = \"some default\"\n"));
        QCOMPARE(outcome.status, 0);
    }

    void loadsTheModulesOfAFolderInTheOrderOfNames_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("functions");
        QTest::newRow("as made") << QStringList{"a", "b"} << QStringList{"One", "Two"};
        QTest::newRow("the other way round") << QStringList{"b", "a"} << QStringList{"Two", "One"};
        QTest::newRow("capitals first") << QStringList{"a", "B"} << QStringList{"Two", "One"};
        QTest::newRow("digits by place") << QStringList{"9", "10"} << QStringList{"Two", "One"};
    }

    void loadsTheModulesOfAFolderInTheOrderOfNames()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, functions);
        const QTemporaryDir folder;
        QVERIFY(copyModule(MODULE_ONE, folder, names[0]));
        QVERIFY(copyModule(MODULE_TWO, folder, names[1]));
        const Outcome outcome = run({"--modules", folder.path(), "--list"});
        QCOMPARE(ownFunctions(outcome), functions);
        QCOMPARE(outcome.status, 0);
    }

    void loadsTheModulesOfSeveralFolders()
    {
        const QTemporaryDir first;
        const QTemporaryDir second;
        QVERIFY(copyModule(MODULE_ONE, first, "z"));
        QVERIFY(copyModule(MODULE_TWO, second, "a"));
        QCOMPARE(
            ownFunctions(run({"--modules", first.path(), "--modules", second.path(), "--list"})),
            QStringList({"One", "Two"}));

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ZVHOST_MODULES",
                           first.path() + QDir::listSeparator() + QDir::listSeparator()
                               + second.path());
        QCOMPARE(ownFunctions(run({"--list"}, environment)), QStringList({"One", "Two"}));

        environment.insert("ZVHOST_MODULES", second.path());
        QCOMPARE(ownFunctions(run({"--modules", first.path(), "--list"}, environment)),
                 QStringList({"Two", "One"}));
    }

    void goesOnWithoutAModuleThatIsBroken()
    {
        const QTemporaryDir folder;
        QVERIFY(!write(folder, "a" + suffixOf(MODULE_ONE), "This is no library").isEmpty());
        QVERIFY(!write(folder, "b.txt", "Nor is this, by its name").isEmpty());
        QVERIFY(copyModule(MODULE_ONE, folder, "c"));
        const Outcome outcome = run({"--modules", folder.path(), "--list"});
        QCOMPARE(ownFunctions(outcome), QStringList("One"));
        QCOMPARE(outcome.status, 0);
        const QString pattern = "^zvhost: Cannot load library .*a\\%1: .+$";
        const QRegularExpression complaint(pattern.arg(suffixOf(MODULE_ONE)),
                                           QRegularExpression::MultilineOption);
        QVERIFY2(complaint.match(QDir::fromNativeSeparators(outcome.errors)).hasMatch(),
                 qPrintable(outcome.errors));
        QVERIFY2(!outcome.errors.contains("b.txt"), qPrintable(outcome.errors));
    }

    void findsFoldersOfModulesByRelativeNames()
    {
        const QTemporaryDir parent;
        QVERIFY(QDir(parent.path()).mkdir("modules"));
        QVERIFY(copyModule(MODULE_ONE, parent, "modules/a"));
        const Outcome outcome =
            run({"--modules", "modules", "--list"}, QProcessEnvironment::systemEnvironment(),
                ZVHOST_FILE, parent.path());
        QCOMPARE(ownFunctions(outcome), QStringList("One"));
    }

    void aFolderOfModulesNeedNotExist()
    {
        const Outcome outcome = run({"--modules", "/no/such/folder", "-e", "print('ran')"});
        QCOMPARE(outcome.output, QString("ran\n"));
        QCOMPARE(outcome.status, 0);
        QVERIFY2(!outcome.errors.contains("folder"), qPrintable(outcome.errors));
    }

    void listsFiles_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("all") << QStringList() << QStringList{"a.txt", "b.bin", "ab.txt"};
        QTest::newRow("types") << QStringList{"--types", ".txt,.c"}
                               << QStringList{"a.txt", "ab.txt"};
        QTest::newRow("filter") << QStringList{"--filter", "B"} << QStringList{"b.bin", "ab.txt"};
        QTest::newRow("both") << QStringList{"--types=.txt", "--filter=b"} << QStringList{"ab.txt"};
        QTest::newRow("nothing") << QStringList{"--filter", "nowhere"} << QStringList();
    }

    void listsFiles()
    {
        QFETCH(QStringList, options);
        QFETCH(QStringList, names);
        // One file in each, since a scan passes over the first of several.
        QTemporaryDir directory;
        QStringList directories;
        for (const char* name : {"a.txt", "b.bin", "ab.txt"}) {
            const QString folder = directory.filePath(QString::number(directories.size()));
            QVERIFY(QDir().mkpath(folder));
            QVERIFY(
                QFile(folder + QLatin1Char('/') + QLatin1String(name)).open(QIODevice::WriteOnly));
            directories.append(folder);
        }
        const Outcome outcome = run(QStringList{"--files"} + directories + options);
        QCOMPARE(outcome.status, 0);
        QStringList listed = outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (QString& line : listed)
            line = QDir::fromNativeSeparators(line).section(QLatin1Char('/'), -1);
        QCOMPARE(listed, names);
        const QString summary = names.isEmpty()
            ? QString("rows: 0, batches: 0, all after [0-9.]+ ms\n$")
            : QString("rows: %1, batches: 1, first row after [0-9.]+ ms, "
                      "all after [0-9.]+ ms\n$")
                  .arg(names.size());
        QVERIFY2(QRegularExpression(summary).match(outcome.errors).hasMatch(),
                 qPrintable(outcome.errors));
    }

    void listsNoFilesBelowWhatIsNoDirectory()
    {
        const Outcome outcome = run({"--files", QDir::tempPath(), "/no/such/directory"});
        const QString expected =
            "no such directory: " + QDir::toNativeSeparators("/no/such/directory");
        QVERIFY2(outcome.errors.contains(expected), qPrintable(outcome.errors));
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.status, 1);
    }

    void opensNoWindowThatNobodySees()
    {
        const Outcome outcome = run({});
        QVERIFY2(outcome.errors.contains("--screenshot"), qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void picturesOfTheWorkbench_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output");
        const QStringList style = {"--style", "Dark"};
        QTest::newRow("alone") << QStringList() << "";
        QTest::newRow("style") << style << "";
        QTest::newRow("style in one word") << QStringList{"--style=Dark"} << "";
        QTest::newRow("new document") << QStringList{"--new", "schematic"} << "";
        QTest::newRow("documents") << QStringList{EXAMPLES "/workbench/amplifier.zvsch",
                                                  EXAMPLES "/workbench/amplifier.testplan"}
                                   << "";
        QTest::newRow("document and script")
            << QStringList{"-e", "print('ran')", EXAMPLES "/workbench/currents.zvscr"} << "ran\n";
    }

    void picturesOfTheWorkbench()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, output);
        const QTemporaryDir user;
        const QString alone = user.filePath("alone.png");
        const QString picture = user.filePath("picture.png");
        const auto screenshot = [](const QString& file) {
            return QStringList{"--screenshot", file};
        };
        QCOMPARE(runFor(user, screenshot(alone)).status, 0);
        const Outcome outcome = runFor(user, arguments + screenshot(picture));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, output);
        const QImage image(picture);
        QCOMPARE(image.size(), QSize(1'200, 800));
        // Two pictures of the same may differ in a cursor that blinks.
        QVERIFY(arguments.isEmpty() || image != QImage(alone));
        const bool isDark = qGray(image.pixel(600, 790)) < 128;
        QCOMPARE(isDark, arguments.join(QString()).contains("Dark"));
    }

    void refusesWhatTheWorkbenchDoesntKnow_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("style") << QStringList{"--style", "Blue"}
                               << "There is no style “Blue”. Available styles: Light, Dark.";
        QTest::newRow("type") << QStringList{"--new", "plan"}
                              << "There is no document type “plan”. Available types: testplan, "
                                 "schematic, script, text.";
        QTest::newRow("picture") << QStringList{"--screenshot", "/no/such/folder/a.png"}
                                 << "can't be written";
    }

    void refusesWhatTheWorkbenchDoesntKnow()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        const QTemporaryDir user;
        const QStringList picture = {"--screenshot", user.filePath("a.png")};
        const Outcome outcome = runFor(user, picture + arguments);
        QVERIFY2(outcome.errors.contains(error), qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
    }

    void withoutDisplaySaysSo()
    {
#if defined(Q_OS_UNIX)
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        const Outcome outcome = run({"-e", "print(1)"}, environment);
        QVERIFY2(outcome.errors.contains("no display"), qPrintable(outcome.errors));
        QCOMPARE(outcome.output, QString("1\n"));
        QCOMPARE(outcome.status, 0);
#else
        QSKIP("There is always a display on this platform");
#endif
    }

    void examplesRun()
    {
        const QDir examples(EXAMPLES);
        const QStringList scripts = examples.entryList({"*.js"}, QDir::Files);
        QVERIFY(!scripts.isEmpty());
        for (const QString& script : scripts) {
            const Outcome outcome = run({examples.filePath(script)});
            QVERIFY2(outcome.status == 0, qPrintable(script + outcome.errors));
            QVERIFY(!outcome.output.isEmpty());
        }
    }

private:
    static QString suffixOf(const QString& file)
    {
        return '.' + QFileInfo(file).suffix();
    }

    static bool copyModule(const QString& file, const QTemporaryDir& folder, const QString& name)
    {
        return QFile::copy(file, folder.filePath(name + suffixOf(file)));
    }

    /// The functions of the modules for these tests, in the order in which they were registered.
    static QStringList ownFunctions(const Outcome& outcome)
    {
        const QRegularExpression function("^function (One|Two)\\(\\)$",
                                          QRegularExpression::MultilineOption);
        QStringList names;
        for (auto match = function.globalMatch(outcome.output); match.hasNext();)
            names.append(match.next().captured(1));
        return names;
    }

    static QString write(const QTemporaryDir& directory, const QString& name, const char* text)
    {
        const QString path = directory.filePath(name);
        return zvtest::writeTo(path, text) ? path : QString();
    }
};

QTEST_GUILESS_MAIN(tst_zvhost)
#include "tst_zvhost.moc"
