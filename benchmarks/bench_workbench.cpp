// How long the reference host takes from the start of its process until its window has been painted, and
// its picture has been written: that is all a user waits for, and a little more. Beside it the same process
// that runs an empty script, which loads Qt and the library, and shows no window.

#include <benchmark/benchmark.h>

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

namespace {

/// Runs the host for a user who has never used it. False if that failed.
bool runHost(const QTemporaryDir& user, const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        environment.insert(QLatin1String(variable), user.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(ZVHOST_FILE), arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

void start(benchmark::State& state, const QTemporaryDir& user, const QStringList& arguments)
{
    // Warm: the second start is that of every day.
    if (!runHost(user, arguments))
        state.SkipWithError("ERROR: the host has failed");
    for (auto _ : state) {
        if (!runHost(user, arguments))
            state.SkipWithError("ERROR: the host has failed");
    }
}

QString pictureFile(const QTemporaryDir& user)
{
    return user.filePath(QStringLiteral("window.png"));
}

void emptyScript(benchmark::State& state)
{
    const QTemporaryDir user;
    start(state, user, {QStringLiteral("-e"), QStringLiteral(";")});
}

void emptyWindow(benchmark::State& state)
{
    const QTemporaryDir user;
    start(state, user, {QStringLiteral("--screenshot"), pictureFile(user)});
}

void windowWithDocuments(benchmark::State& state)
{
    const QTemporaryDir user;
    QStringList arguments = {QStringLiteral("--screenshot"), pictureFile(user)};
    const QDir examples(QStringLiteral(EXAMPLES "/workbench"));
    for (const QString& name : examples.entryList(QDir::Files))
        arguments.append(examples.filePath(name));
    start(state, user, arguments);
}

BENCHMARK(emptyScript)->Name("start, empty/floor")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(emptyWindow)->Name("start, empty/library")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(emptyScript)
    ->Name("start, documents/floor")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(windowWithDocuments)
    ->Name("start, documents/library")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
