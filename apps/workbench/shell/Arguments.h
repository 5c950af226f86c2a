#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace workbench {

struct DocumentType;

/// What the workbench is told to show when it opens.
struct Arguments
{
    QString style; ///< empty for the user's own
    std::vector<const DocumentType*> newDocuments;
    QString picture; ///< the file that a picture of the window goes to; empty for none
    QStringList files; ///< absolute paths
    QString error; ///< what is wrong with the words; empty if nothing is

    /// From the words "--style NAME", "--new TYPE", "--screenshot FILE" and names of files.
    static Arguments of(const QStringList& words);
};

} // namespace workbench
