#pragma once

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

class QCoreApplication;

/// What the program was asked to do.
struct CommandLine
{
    QString library; ///< empty for the one beside the program
    QStringList modules;
    bool listsRegistrations = false;
    bool listsFiles = false;
    QString types;
    QString filter;
    QStringList directories; ///< whose files are to be listed
    QStringList texts; ///< scripts
    QStringList scripts; ///< their files
    bool opensWorkbench = false;
    bool makesPicture = false;
    std::vector<std::string> workbench; ///< the words for its command

    /// Call it with the arguments of main before the application is made, which would take --style for
    /// its own. \p arguments are changed and valid for good.
    static void hideFromQt(int count, char** arguments);

    /// Handles --help, --version and mistakes by itself, and then doesn't return.
    static CommandLine of(const QCoreApplication& application);
};
