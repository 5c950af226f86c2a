// Searches text files in the background, with a progress line, and can be cancelled at any time:
//
//   zvsearch [--cancel-after HITS] TEXT DIRECTORY
//
// Hits go to standard output as FILE:LINE: TEXT, all else to standard error. Returns 0 if there
// were hits, 1 if there were none, 2 if something is wrong and 3 if it was cancelled, by Ctrl+C for
// example.

#include "SearchRequest.h"

#include <zvutil/libzvutil/BackgroundRequestManager.h>
#include <zvutil/libzvutil/abstract_response.h>
#include <zvutil/stop_source.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>

namespace {

constexpr int hitsFound = 0;
constexpr int nothingFound = 1;
constexpr int somethingWrong = 2;
constexpr int wasCancelled = 3;

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int signal)
{
    interrupted = 1;
    // A second time ends the program at once.
    std::signal(signal, SIG_DFL);
}

struct Arguments
{
    QString text;
    QString directory;
    int cancelAfter = -1; ///< hits, or negative for never
};

/// Ends the program if the arguments don't make sense.
Arguments parse(const QCoreApplication& application)
{
    const QCommandLineOption cancelAfter(QStringLiteral("cancel-after"),
                                         QStringLiteral("Cancel when there are that many hits."),
                                         QStringLiteral("hits"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption(cancelAfter);
    parser.addPositionalArgument(QStringLiteral("text"), QStringLiteral("What to search for."));
    parser.addPositionalArgument(QStringLiteral("directory"), QStringLiteral("Where."));
    parser.process(application);
    const QStringList positional = parser.positionalArguments();
    Arguments arguments;
    bool isGood = positional.size() == 2 && !positional.first().isEmpty();
    if (isGood && parser.isSet(cancelAfter)) {
        arguments.cancelAfter = parser.value(cancelAfter).toInt(&isGood);
        isGood = isGood && arguments.cancelAfter >= 0;
    }
    if (!isGood) {
        std::fputs(qPrintable(parser.helpText()), stderr);
        std::exit(somethingWrong);
    }
    arguments.text = positional[0];
    arguments.directory = positional[1];
    return arguments;
}

} // namespace

int main(int argc, char* argv[])
{
    using namespace zvutil::libzvutil;
    QCoreApplication application(argc, argv);
    const Arguments arguments = parse(application);

    // The request goes to the worker thread. What it emits arrives here by the event loop.
    const auto request = std::make_shared<SearchRequest>(arguments.directory, arguments.text);
    abstract_response response(request.get());
    int hits = 0;

    // Whoever has the source can cancel, on any thread.
    const zvutil::stop_source cancel;
    response.attachStopToken(cancel.get_token());
    std::signal(SIGINT, &onInterrupt);
    QTimer interrupts;
    QObject::connect(&interrupts, &QTimer::timeout, &application, [&cancel] {
        if (interrupted)
            cancel.request_stop();
    });
    interrupts.start(50);

    QObject::connect(request.get(), &SearchRequest::found, &application,
                     [&](const QString& file, int number, const QString& line) {
                         std::printf("%s:%d: %s\n", qPrintable(file), number, qPrintable(line));
                         std::fflush(stdout);
                         if (++hits == arguments.cancelAfter)
                             cancel.request_stop();
                     });
    QObject::connect(request.get(), &SearchRequest::progress, &application,
                     [&hits](int searched, int unreadable) {
                         std::fprintf(stderr, "\r%d files searched, %d unreadable, %d hits",
                                      searched, unreadable, hits);
                     });
    // Queued, since a request that is aborted right away has failed before the event loop runs.
    QObject::connect(
        &response, &abstract_response::completed, &application,
        [&hits] {
            std::fputs("\n", stderr);
            QCoreApplication::exit(hits > 0 ? hitsFound : nothingFound);
        },
        Qt::QueuedConnection);
    QObject::connect(
        &response, &abstract_response::failed, &application,
        [&cancel](const std::string& message) {
            std::fprintf(stderr, "\n%s\n", message.c_str());
            QCoreApplication::exit(cancel.stop_requested() ? wasCancelled : somethingWrong);
        },
        Qt::QueuedConnection);
    if (arguments.cancelAfter == 0)
        cancel.request_stop();

    auto manager = std::make_unique<BackgroundRequestManager>();
    manager->add(request);
    const int result = QCoreApplication::exec();

    // The event loop is over, so the manager may go. Its thread is ended for the request's sake,
    // which is destroyed here and must not be in use there.
    manager.reset();
    QThread* const worker = request->thread();
    do
        worker->quit();
    while (!worker->wait(100));
    return result;
}
