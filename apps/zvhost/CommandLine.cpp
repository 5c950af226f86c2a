#include "CommandLine.h"

#include "ProgramArguments.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace {

QCommandLineOption flag(const char* name, const char* description)
{
    return QCommandLineOption(QLatin1String(name), QLatin1String(description));
}

QCommandLineOption option(const char* name, const char* description, const char* value)
{
    return QCommandLineOption(QLatin1String(name), QLatin1String(description),
                              QLatin1String(value));
}

QCommandLineOption hidden(QCommandLineOption option)
{
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

/// The options that are passed on to the workbench.
constexpr std::array workbenchOptions = {"style", "new", "screenshot"};

void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Reference host of libzvutil: loads the library, opens the workbench and runs scripts."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        option("style", "Opens the workbench in the style NAME, this time.", "NAME"),
        hidden(option(ProgramArguments::hiddenStyle, "", "NAME")),
        option("new",
               "Opens a new document: testplan, schematic, script, text or a type of a module. "
               "Repeatable.",
               "TYPE"),
        option("screenshot", "Writes a picture of the workbench to FILE, and ends.", "FILE"),
        option("e", "Runs TEXT as a script.", "TEXT"),
        option(
            "run",
            "Runs FILE as a script, of whatever name, without the workbench; \"-\" is the standard "
            "input. All that follows is for the script: the array scriptArguments.",
            "FILE"),
        flag("list", "Lists functions, commands and options."),
        option("library", "Loads FILE as libzvutil.", "FILE"),
        option("load", "Loads the module FILE after the library. Repeatable.", "FILE"),
        option("modules", "Loads all modules in FOLDER after the library. Repeatable.", "FOLDER"),
        flag("files", "Lists the files below directories, which come in place of other files."),
        option("types", "With --files: lists only these types, \".a,.b\".", "TYPES"),
        option("filter", "With --files: lists only files whose name contains TEXT.", "TEXT"),
    });
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral("Documents (.testplan, .zvsch, .zvscr) to open in the workbench, scripts to "
                       "run in turn, or directories. With nothing to run, the workbench opens."),
        QStringLiteral("[FILE...]"));
}

/// Splits off the arguments that are for the script of --run, and returns them.
QStringList takeScriptArguments(QStringList& arguments)
{
    const QRegularExpression run(QStringLiteral("^--?run(=.*)?$"));
    const int option = arguments.indexOf(run);
    if (option < 0)
        return {};
    const int end = option + (arguments.at(option).contains(QLatin1Char('=')) ? 1 : 2);
    const QStringList rest = arguments.mid(end);
    arguments = arguments.mid(0, end);
    return rest;
}

/// Returns whether \p file is a document, by its name; all other files are scripts.
bool isDocument(const QString& file)
{
    constexpr std::array extensions = {".testplan", ".zvsch", ".zvscr"};
    return std::any_of(extensions.begin(), extensions.end(), [&file](const char* extension) {
        return file.endsWith(QLatin1String(extension), Qt::CaseInsensitive);
    });
}

} // namespace

CommandLine CommandLine::of(const QStringList& arguments)
{
    CommandLine line;
    QStringList own = arguments;
    line.scriptArguments = takeScriptArguments(own);
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(own);

    line.library = parser.value(QStringLiteral("library"));
    line.modules = parser.values(QStringLiteral("load"));
    line.moduleFolders = parser.values(QStringLiteral("modules"));
    line.listsRegistrations = parser.isSet(QStringLiteral("list"));
    line.types = parser.value(QStringLiteral("types"));
    line.filter = parser.value(QStringLiteral("filter"));
    line.texts = parser.values(QStringLiteral("e"));
    line.makesPicture = parser.isSet(QStringLiteral("screenshot"));
    line.listsFiles = parser.isSet(QStringLiteral("files"));
    if (line.listsFiles) {
        line.directories = parser.positionalArguments();
        return line;
    }
    for (const char* const name : workbenchOptions) {
        QStringList values = parser.values(QLatin1String(name));
        if (name == std::string("style"))
            values += parser.values(QLatin1String(ProgramArguments::hiddenStyle));
        for (const QString& value : values) {
            line.workbench.push_back(std::string("--") + name);
            line.workbench.push_back(value.toStdString());
        }
    }
    for (const QString& file : parser.positionalArguments()) {
        if (isDocument(file))
            line.workbench.push_back(file.toStdString());
        else
            line.scripts.append(file);
    }
    line.runs = parser.value(QStringLiteral("run"));
    if (!line.runs.isEmpty())
        line.scripts.append(line.runs);
    line.opensWorkbench = !line.workbench.empty()
        || (line.texts.isEmpty() && line.scripts.isEmpty() && !line.listsRegistrations);
    return line;
}
