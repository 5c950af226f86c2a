#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <vector>

namespace workbench {

struct DocumentType;

/// The words of the workbench's command, which say what it has to show when it opens.
struct Arguments
{
    Q_DECLARE_TR_FUNCTIONS(workbench::Arguments)

public:
    QString style; ///< empty for the user's own choice
    std::vector<const DocumentType*> newDocuments;
    QString picture; ///< file to write a picture of the window to; empty for none
    QStringList files; ///< absolute paths
    QString error; ///< what is wrong with the words; empty if nothing is

    /// Returns what the words "--style NAME", "--new TYPE", "--screenshot FILE" and names of files
    /// ask for.
    static Arguments of(const QStringList& words);
};

} // namespace workbench
