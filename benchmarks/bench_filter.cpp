// Finding a text among 1,000,000 rows without blocking: the library's filter against a bare loop of the
// steps that it has to do for each row, which is its floor, and against Qt's filtering proxy, which
// blocks until it has finished. Beside that the longest time for which a pass keeps a timer waiting.

#include "support/Quick.h"

#include "impl/models/TextBackgroundListFilter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegExp>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

int rowCount()
{
    return zvbench::isQuick() ? 2'000 : 1'000'000;
}

void makeApplication()
{
    static int count = 1;
    static char name[] = "bench_filter";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
    // Each search writes to the log.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

QStringListModel& source()
{
    static QStringListModel* const model = [] {
        QStringList rows;
        for (int i = 0; i < rowCount(); ++i)
            rows.append(QStringLiteral("C:/projects/board/sheet-%1/symbols/component-%2.zvsch")
                            .arg(i / 100, 5, 10, QLatin1Char('0'))
                            .arg(i, 7, 10, QLatin1Char('0')));
        return new QStringListModel(rows);
    }();
    return *model;
}

QString searchOf(const benchmark::State& state)
{
    return state.range(0) == 0 ? QStringLiteral("component-00012")
                               : QStringLiteral("sheet-?0*component-0001?");
}

QRegExp patternOf(const QString& search)
{
    return QRegExp(u'*' + search + u'*', Qt::CaseSensitive, QRegExp::Wildcard);
}

void check(benchmark::State& state, int hits)
{
    const QRegExp pattern = patternOf(searchOf(state));
    const QStringList rows = source().stringList();
    const auto expected = std::count_if(rows.begin(), rows.end(), [&pattern](const QString& row) {
        return pattern.exactMatch(row);
    });
    if (hits != expected)
        state.SkipWithError("not the rows that match");
}

/// The steps of a row by themselves.
void bareLoop(benchmark::State& state)
{
    makeApplication();
    QTimer timer;
    timer.start(50);
    const QRegExp pattern = patternOf(searchOf(state));
    for (auto _ : state) {
        std::vector<QModelIndex> hits;
        for (int row = 0; row < rowCount(); ++row) {
            const QModelIndex index = source().index(row, 0);
            if (pattern.exactMatch(index.data().toString()))
                hits.push_back(index);
            QCoreApplication::processEvents();
        }
        state.PauseTiming();
        check(state, static_cast<int>(hits.size()));
        state.ResumeTiming();
    }
}

void library(benchmark::State& state)
{
    makeApplication();
    for (auto _ : state) {
        state.PauseTiming();
        TextBackgroundListFilter filter(nullptr);
        int hits = 0;
        QObject::connect(&filter, &AbstractBackgroundListFilter::accepted,
                         [&hits](const AbstractBackgroundListFilter::ModelIndexVectorPtr& rows) {
                             hits += static_cast<int>(rows->size());
                         });
        filter.pause();
        filter.setSourceModel(&source());
        filter.setPaused(false);
        state.ResumeTiming();
        // The pass has ended when this returns.
        filter.setSearchString(searchOf(state));
        state.PauseTiming();
        const QTimer* const timer = filter.findChild<QTimer*>();
        while (timer->isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        check(state, hits);
        state.ResumeTiming();
    }
}

void proxy(benchmark::State& state)
{
    makeApplication();
    const QString search = searchOf(state);
    for (auto _ : state) {
        state.PauseTiming();
        QSortFilterProxyModel model;
        model.setSourceModel(&source());
        model.setDynamicSortFilter(false);
        state.ResumeTiming();
        // It looks for a wildcard pattern anywhere in the row by itself.
        if (search.contains(u'*'))
            model.setFilterWildcard(search);
        else
            model.setFilterFixedString(search);
        const int hits = model.rowCount();
        state.PauseTiming();
        check(state, hits);
        state.ResumeTiming();
    }
}

/// Tells the longest time between two events of a timer of a millisecond.
void longestGap(benchmark::State& state)
{
    makeApplication();
    for (auto _ : state) {
        TextBackgroundListFilter filter(nullptr);
        filter.pause();
        filter.setSourceModel(&source());
        filter.setPaused(false);
        QTimer timer;
        QElapsedTimer since;
        qint64 longest = 0;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            longest = std::max(longest, since.nsecsElapsed());
            since.start();
        });
        timer.start(1);
        since.start();
        filter.setSearchString(searchOf(state));
        longest = std::max(longest, since.nsecsElapsed());
        state.SetIterationTime(static_cast<double>(longest) / 1e9);
    }
}

const bool registered = [] {
    const std::pair<const char*, void (*)(benchmark::State&)> contenders[] = {
        {"floor", &bareLoop}, {"library", &library}, {"QSortFilterProxyModel", &proxy}};
    int search = 0;
    for (const char* name : {"plain text", "wildcards"}) {
        for (const auto& [contender, run] : contenders)
            benchmark::RegisterBenchmark((std::string(name) + '/' + contender).c_str(), run)
                ->Arg(search)
                ->UseRealTime();
        benchmark::RegisterBenchmark((std::string("longest gap/") + name).c_str(), &longestGap)
            ->Arg(search++)
            ->UseManualTime()
            ->Iterations(1);
    }
    return true;
}();

} // namespace
