#pragma once

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// The options and arguments of the program.
struct CommandLine
{
    QString library; ///< empty for the library beside the program
    QStringList modules;
    QStringList moduleFolders;
    bool listsRegistrations = false;
    bool listsFiles = false;
    QString types;
    QString filter;
    QStringList directories; ///< folders whose files are listed
    QStringList texts; ///< texts to run as scripts
    QStringList scripts; ///< files to run as scripts; "-" stands for the standard input
    QString runs; ///< the one of them that --run names
    QStringList scriptArguments; ///< what follows the script of --run
    bool opensWorkbench = false;
    bool makesPicture = false;
    std::vector<std::string> workbench; ///< words for the workbench's command

    /// Returns what \p arguments ask for, the program's name first. Handles --help, --version and
    /// mistakes by itself, and then doesn't return.
    static CommandLine of(const QStringList& arguments);
};
