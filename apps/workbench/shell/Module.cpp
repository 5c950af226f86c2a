// How the host reaches the workbench: by one command.

#include "shell/open.h"

#include <HostSupport/ComConstruct.h>

#include <QString>
#include <QStringList>

namespace {

/// The words are options of zvhost's command line, and files to open. Opens the window if there is
/// none, and else shows them in the one that there is.
COMERROR openWorkbench(int wordCount, char** words, YRef<MessageHandler> messages,
                       const ScpParseContext& /*context*/)
{
    QStringList arguments;
    for (int i = 1; i < wordCount; ++i)
        arguments.append(QString::fromUtf8(words[i]));
    const QString error = workbench::open(arguments);
    if (error.isEmpty())
        return COM_OK;
    if (messages)
        messages->message(error.toUtf8().constData());
    return COM_FAILED;
}

const ComConstruct workbenchCommand("_workbench", &openWorkbench, 0);

} // namespace
