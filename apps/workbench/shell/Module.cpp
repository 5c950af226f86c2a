// The host reaches the workbench by this one command.

#include "shell/open_workbench.h"

#include <HostSupport/ComConstruct.h>

#include <QString>
#include <QStringList>

namespace {

/// Opens the window, or uses the one that is open. The words are options of zvhost's command line,
/// and files to open.
COMERROR openWorkbench(int wordCount, char** words, YRef<MessageHandler> messages,
                       const ScpParseContext& /*context*/)
{
    QStringList arguments;
    for (int i = 1; i < wordCount; ++i)
        arguments.append(QString::fromUtf8(words[i]));
    const QString error = workbench::openWorkbench(arguments);
    if (error.isEmpty())
        return COM_OK;
    if (messages)
        messages->message(error.toUtf8().constData());
    return COM_FAILED;
}

const ComConstruct workbenchCommand("_workbench", &openWorkbench, 0);

} // namespace
