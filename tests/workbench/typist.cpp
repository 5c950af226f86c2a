// A module that works in the workbench without a pause, for a test that kills the program meanwhile.

#include <HostSupport/ComConstruct.h>
#include <HostSupport/host.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QEventLoop>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QString>
#include <QTimer>

#include <cstdio>
#include <string>
#include <vector>

namespace {

QMainWindow* workbench()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const window = qobject_cast<QMainWindow*>(widget);
        if (window && window->objectName() == QLatin1String("workbench"))
            return window;
    }
    return nullptr;
}

/// Makes the same edit in all documents, as somebody would who types into the window.
void edit(const QMainWindow& window, int number)
{
    for (QPlainTextEdit* const text :
         window.findChildren<QPlainTextEdit*>(QStringLiteral("scriptText")))
        text->appendPlainText(QStringLiteral("edit %1.").arg(number));
    for (const QAbstractItemView* const plan :
         window.findChildren<QAbstractItemView*>(QStringLiteral("testPlanView")))
        plan->model()->setData(plan->model()->index(0, 0), number, Qt::EditRole);
}

/// keep_typing INTERVAL PAUSE FILE: opens FILE and two new documents, has copies made each INTERVAL milliseconds, and
/// makes an edit after each PAUSE of milliseconds, whose number it prints when it is made.
COMERROR keepTyping(int count, char** words, YRef<MessageHandler> /*messages*/,
                    const ScpParseContext& context)
{
    if (count < 4)
        return COM_FAILED;
    host::callCommand("_workbench", {"--new", "script", "--new", "testplan", words[3]}, {},
                      context);
    const QMainWindow* const window = workbench();
    auto* const copying =
        window ? window->findChild<QTimer*>(QStringLiteral("recoveryTimer")) : nullptr;
    if (!copying)
        return COM_FAILED;
    copying->setInterval(std::stoi(words[1]));
    QEventLoop loop;
    QTimer typing;
    int number = 0;
    typing.callOnTimeout([window, &number] {
        if (!window->isEnabled())
            return;
        edit(*window, ++number);
        std::printf("%d\n", number);
        std::fflush(stdout);
    });
    typing.start(std::stoi(words[2]));
    loop.exec();
    return COM_OK;
}

const ComConstruct keepTypingCommand("keep_typing", &keepTyping, 0);

} // namespace
