#include "CommandLine.h"
#include "ConsoleScriptHost.h"
#include "ProgramArguments.h"
#include "ScriptEngine.h"
#include "ThreadScriptSession.h"
#include "host_look.h"
#include "load_library.h"
#include "standard_error.h"
#include "utf8_console.h"

#include <HostSupport/ScriptSession.h>
#include <HostSupport/host.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

void complain(const QString& text)
{
    writeError(QStringLiteral("zvhost: ") + text);
}

/// Selects a platform without a screen if there is no display: windows still work, but nobody sees
/// them.
void chooseDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY")
        || qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return;
    complain(QStringLiteral("no display, windows stay off the screen"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

void listRegistrations()
{
    for (const host::FunctionInfo& function : host::functions()) {
        std::string types;
        for (const argType type : function.arguments)
            types +=
                std::string(types.empty() ? "" : ", ") + (type == ARG_STRING ? "string" : "number");
        std::printf("function %s(%s)\n", function.name.c_str(), types.c_str());
    }
    for (const host::CommandInfo& command : host::commands())
        std::printf("command  %s\n", command.name.c_str());
    for (const host::OptionInfo& option : host::options())
        std::printf("option   %s = \"%s\"\n", option.name.c_str(), option.defaultValue.c_str());
}

/// Returns an error in the form SOURCE:LINE: MESSAGE, so that editors find the place.
QString described(const host::ScriptOutcome& outcome, const QString& source)
{
    QString location = QDir::toNativeSeparators(source);
    if (outcome.line > 0)
        location += QLatin1Char(':') + QString::number(outcome.line);
    return location + QStringLiteral(": ") + QString::fromStdString(outcome.error);
}

bool runText(ScriptEngine& engine, const QString& text, const QString& source)
{
    const host::ScriptOutcome outcome = engine.run(text, source);
    if (!outcome.error.empty())
        writeError(described(outcome, source));
    if (!outcome.stack.empty())
        writeError(QString::fromStdString(outcome.stack));
    return outcome.error.empty();
}

bool runFile(ScriptEngine& engine, const QString& path)
{
    QFile file(path);
    const bool isInput = path == QLatin1String("-");
    if (!(isInput ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly))) {
        complain(QStringLiteral("cannot read %1: %2")
                     .arg(QDir::toNativeSeparators(path), file.errorString()));
        return false;
    }
    return runText(engine, QString::fromUtf8(file.readAll()),
                   isInput ? QStringLiteral("standard input") : path);
}

bool runScripts(const CommandLine& line)
{
    const QStringList& texts = line.texts;
    const QStringList& files = line.scripts;
    ConsoleScriptHost console;
    ScriptEngine engine(registeredNames(), console);
    engine.setArguments(line.scriptArguments);
    return std::all_of(texts.begin(), texts.end(),
                       [&engine](const QString& text) {
                           return runText(engine, text, QStringLiteral("command line"));
                       })
        && std::all_of(files.begin(), files.end(),
                       [&engine](const QString& file) { return runFile(engine, file); });
}

/// Lists directories through the library's model.
bool listFiles(const QStringList& directories, const QString& types, const QString& filter)
{
    for (const QString& directory : directories) {
        if (!QFileInfo(directory).isDir()) {
            complain(
                QStringLiteral("no such directory: %1").arg(QDir::toNativeSeparators(directory)));
            return false;
        }
    }
    const QString error = loadOwnModule(QStringLiteral("zvhost_files"));
    if (!error.isEmpty()) {
        complain(error);
        return false;
    }
    std::vector<std::string> words = {types.toStdString(), filter.toStdString()};
    for (const QString& directory : directories)
        words.push_back(directory.toStdString());
    host::callCommand("zvhost_files", words, {}, {"command line", 0});
    return true;
}

/// Loads the workbench as a module and opens it; \p words are those of its command.
bool openWorkbench(const std::vector<std::string>& words)
{
    const QString error = loadOwnModule(QStringLiteral("workbench"));
    if (!error.isEmpty()) {
        complain(error);
        return false;
    }
    host::setScriptSessionMaker([](host::ScriptListener listener) {
        return std::make_unique<ThreadScriptSession>(registeredNames(), std::move(listener));
    });
    try {
        ConsoleScriptHost().callCommand("_workbench", words, "command line");
    } catch (const host::CallError&) {
        // The command has reported why.
        return false;
    }
    return true;
}

/// Returns whether a module has added a type of documents to the workbench that opens \p file.
bool isDocumentOfModule(const QString& file)
{
    const std::vector<host::CommandInfo> commands = host::commands();
    const std::string command = "_workbench_opens";
    if (std::none_of(commands.begin(), commands.end(),
                     [&command](const host::CommandInfo& info) { return info.name == command; }))
        return false;
    try {
        host::callCommand(command, {file.toStdString()}, {}, {"command line", 0});
    } catch (const host::CallError&) {
        return false;
    }
    return true;
}

/// Passes the files that modules have types for on to the workbench. The command line was read before the
/// modules were loaded, and takes them for scripts.
void passDocumentsOn(CommandLine& line)
{
    QStringList scripts;
    for (const QString& file : line.scripts) {
        if (file != line.runs && isDocumentOfModule(file)) {
            line.workbench.push_back(file.toStdString());
            line.opensWorkbench = true;
        } else {
            scripts.append(file);
        }
    }
    line.scripts = scripts;
}

bool isOnScreen()
{
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

/// Returns whether there is a window that the user can close.
bool hasOpenWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return isOnScreen() && std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
               return window->isVisible();
           });
}

/// Loads the modules in the folders for them. The program goes on without those that fail.
void loadUsersModules(const QStringList& given)
{
    for (const QString& folder : moduleFolders(given)) {
        for (const QString& error : loadModulesIn(folder))
            complain(error);
    }
}

QString loadAll(const CommandLine& line)
{
    QString error = loadLibrary(line.library);
    if (error.isEmpty())
        loadUsersModules(line.moduleFolders);
    for (auto file = line.modules.begin(); error.isEmpty() && file != line.modules.end(); ++file)
        error = loadModule(*file);
    return error;
}

} // namespace

int main(int argc, char* argv[])
{
    useUtf8Console();
    chooseDisplay();
    const ProgramArguments arguments(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    useHostLook();
    QCoreApplication::setApplicationName(QStringLiteral("zvhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZVHOST_VERSION));
    CommandLine line = CommandLine::of(arguments.remaining(argc, argv));

    const QString error = loadAll(line);
    if (!error.isEmpty()) {
        complain(error);
        return 1;
    }
    passDocumentsOn(line);
    if (line.listsRegistrations)
        listRegistrations();
    if (line.listsFiles)
        return listFiles(line.directories, line.types, line.filter) ? 0 : 1;
    if (!runScripts(line))
        return 1;
    if (line.opensWorkbench && !isOnScreen() && !line.makesPicture) {
        complain(QStringLiteral("nobody can see the workbench; --screenshot FILE makes a picture"));
        return 1;
    }
    if (line.opensWorkbench && !openWorkbench(line.workbench))
        return 1;
    return line.makesPicture || hasOpenWindows() ? QApplication::exec() : 0;
}
