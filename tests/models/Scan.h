#pragma once

#include "support/FileTree.h"
#include "support/WalkOracle.h"

#include "impl/models/ZvMultiDirectoryListModelProcess.h"

#include <zvutil/ZvFilePath.h>

#include <zv_logging/host.h>

#include <QTest>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zvtest {

using Lines = std::vector<std::string>;

/// The log as the scan writes it.
class Log
{
public:
    using Reaction = std::function<void(const std::string& line)>;

    /// \p reaction is called with each line, from where it is written.
    explicit Log(Reaction reaction = {})
    {
        zvutil::logging::host::setObserver([this, reaction](const std::string& call) {
            lines.push_back(call);
            if (reaction)
                reaction(call);
        });
    }

    ~Log() { zvutil::logging::host::setObserver({}); }

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    Lines take() { return std::exchange(lines, {}); }

    Lines lines;
};

inline Lines runLines(const Lines& errors = {}, const std::string& isRunning = "false")
{
    Lines lines{"write 1 FileView: Start invoked, already running: " + isRunning,
                "write 1 FileView: starting"};
    lines.insert(lines.end(), errors.begin(), errors.end());
    lines.insert(
        lines.end(),
        {"write 1 FileView: b", "write 1 FileView: stopping", "write 1 FileView: stopped"});
    return lines;
}

/// A scan on this thread, so that each operation has its whole effect before it returns.
class Scan
{
public:
    explicit Scan(long long batchSize = 1000)
        : process(batchSize)
    {
        using Process = ZvMultiDirectoryListModelProcess;
        QObject::connect(&process, &Process::started, [this] {
            rows.clear();
            batches.clear();
            signalOrder += QLatin1Char('(');
        });
        QObject::connect(&process, &Process::stopped, [this] { signalOrder += QLatin1Char(')'); });
        QObject::connect(&process, &Process::nextBatch, [this](const QVariantList& batch) {
            batches.append(batch.size());
            for (const QVariant& row : batch)
                rows.append(row.toString());
            signalOrder += QLatin1Char('b');
            if (onBatch)
                onBatch();
        });
    }

    void add(const QString& directory) { process.addDirectory(directory.toStdWString()); }
    void remove(const QString& directory) { process.removeDirectory(directory.toStdWString()); }

    ZvMultiDirectoryListModelProcess process;
    QStringList rows;
    QList<int> batches;
    QString signalOrder;
    std::function<void()> onBatch;
};

/// Names that differ from directory to directory, so that an order can't be right by chance.
inline QStringList named(const QString& letters)
{
    QStringList names;
    for (const QChar letter : letters)
        names.append(letter + QString(".txt"));
    return names;
}

} // namespace zvtest

Q_DECLARE_METATYPE(zvtest::Lines)
