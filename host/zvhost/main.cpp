#include "LibraryLoader.h"
#include "ScriptEngine.h"

#include <HostSupport/host.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

void complain(const QString& text)
{
    std::fprintf(stderr, "zvhost: %s\n", text.toUtf8().constData());
}

/// Without a display windows still work, but nobody sees them.
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

bool runText(ScriptEngine& engine, const QString& text, const QString& source)
{
    const QString error = engine.run(text, source);
    // Without our name in front, so that editors find the place.
    if (!error.isEmpty())
        std::fprintf(stderr, "%s\n", error.toUtf8().constData());
    return error.isEmpty();
}

bool runFile(ScriptEngine& engine, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
        return false;
    }
    return runText(engine, QString::fromUtf8(file.readAll()), path);
}

/// Lists directories through the library's model.
bool listFiles(const QStringList& directories, const QString& types, const QString& filter)
{
    for (const QString& directory : directories) {
        if (!QFileInfo(directory).isDir()) {
            complain(QStringLiteral("no such directory: %1").arg(directory));
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

/// Whether a script has opened a window that somebody can close.
bool hasOpenWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return QGuiApplication::platformName() != QLatin1String("offscreen")
        && std::any_of(windows.begin(), windows.end(),
                       [](const QWidget* window) { return window->isVisible(); });
}

} // namespace

int main(int argc, char* argv[])
{
    chooseDisplay();
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zvhost"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZVHOST_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reference host of libzvutil: loads the library and runs scripts."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption evaluate(QStringLiteral("e"), QStringLiteral("Runs TEXT as a script."),
                                      QStringLiteral("TEXT"));
    const QCommandLineOption list(QStringLiteral("list"),
                                  QStringLiteral("Lists functions, commands and options."));
    const QCommandLineOption library(QStringLiteral("library"),
                                     QStringLiteral("Loads FILE as libzvutil."),
                                     QStringLiteral("FILE"));
    const QCommandLineOption module(QStringLiteral("module"),
                                    QStringLiteral("Loads a module after the library. Repeatable."),
                                    QStringLiteral("FILE"));
    const QCommandLineOption filesBelow(
        QStringLiteral("files"),
        QStringLiteral("Lists the files below directories, which come in place of scripts."));
    const QCommandLineOption types(
        QStringLiteral("types"), QStringLiteral("With --files: lists only these types, \".a,.b\"."),
        QStringLiteral("TYPES"));
    const QCommandLineOption filter(
        QStringLiteral("filter"),
        QStringLiteral("With --files: lists only files whose name contains TEXT."),
        QStringLiteral("TEXT"));
    parser.addOptions({evaluate, list, library, module, filesBelow, types, filter});
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Scripts to run in turn, or directories."),
                                 QStringLiteral("[FILE...]"));
    parser.process(application);

    QString error = loadLibrary(parser.value(library));
    const QStringList modules = parser.values(module);
    for (auto file = modules.begin(); error.isEmpty() && file != modules.end(); ++file)
        error = loadModule(*file);
    if (!error.isEmpty()) {
        complain(error);
        return 1;
    }

    if (parser.isSet(list))
        listRegistrations();
    const QStringList texts = parser.values(evaluate);
    const QStringList files = parser.positionalArguments();
    if (texts.isEmpty() && files.isEmpty() && !parser.isSet(list)) {
        complain(QStringLiteral("nothing to run; see --help"));
        return 1;
    }
    if (parser.isSet(filesBelow))
        return listFiles(files, parser.value(types), parser.value(filter)) ? 0 : 1;
    ScriptEngine engine;
    for (const QString& text : texts) {
        if (!runText(engine, text, QStringLiteral("command line")))
            return 1;
    }
    for (const QString& file : files) {
        if (!runFile(engine, file))
            return 1;
    }
    return hasOpenWindows() ? QApplication::exec() : 0;
}
