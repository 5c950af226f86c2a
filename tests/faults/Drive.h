#pragma once

#include "fault_injector.h"

#include <QByteArray>
#include <QFile>
#include <QRandomGenerator>
#include <QString>
#include <QTest>

#include <cerrno>
#include <functional>
#include <vector>

namespace zvtest {

/// What is done to one call on a file, as a row of a test's data.
struct FaultKind
{
    const char* name;
    zv_fault_action action;
    int error;
    int lasts;
    bool isHarmless; ///< a caller that tries again, or goes on, succeeds
};

/// Every fault that doesn't end the process.
inline const std::vector<FaultKind>& faultKinds()
{
#if defined(Q_OS_WIN)
    // Numbers of the system: disk full, write fault, access denied, sharing violation, no handles left.
    static const std::vector<FaultKind> kinds = {
        {"disk full", zv_fault_fail, 112, 0, false},
        {"disk full from then on", zv_fault_fail, 112, 1, false},
        {"disk full within a block", zv_fault_short, 112, 1, false},
        {"broken device", zv_fault_fail, 29, 0, false},
        {"no permission", zv_fault_fail, 5, 0, false},
        {"open elsewhere", zv_fault_fail, 32, 0, false},
        {"too many open files", zv_fault_fail, 4, 0, false},
        {"short", zv_fault_short, 0, 0, true},
    };
#else
    static const std::vector<FaultKind> kinds = {
        {"disk full", zv_fault_fail, ENOSPC, 0, false},
        {"disk full from then on", zv_fault_fail, ENOSPC, 1, false},
        {"disk full within a block", zv_fault_short, ENOSPC, 1, false},
        {"broken device", zv_fault_fail, EIO, 0, false},
        {"quota used up", zv_fault_fail, EDQUOT, 0, false},
        {"no permission", zv_fault_fail, EACCES, 0, false},
        {"interrupted", zv_fault_fail, EINTR, 0, true},
        {"too many open files", zv_fault_fail, EMFILE, 0, false},
        {"short", zv_fault_short, 0, 0, true},
    };
#endif
    return kinds;
}

inline int faultKindCount()
{
    return static_cast<int>(faultKinds().size());
}

inline const FaultKind& faultKind(int kind)
{
    return faultKinds()[static_cast<std::size_t>(kind)];
}

/// What has become of a fault.
struct Injected
{
    int number; ///< which call was to be hit
    int calls; ///< how many there were
    QByteArray call; ///< name of the function that was hit; empty if none was
};

/// While it lives calls on files below a folder are counted, and one of them is hit.
class Faults
{
public:
    Faults(const QString& folder, const zv_fault& fault)
    {
        zv_faults_arm(QFile::encodeName(folder).constData(), &fault);
    }

    ~Faults() { zv_faults_disarm(); }

    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;
};

/// Whether each fault is tried also where there are many: the environment has ZV_FAULTS=all.
inline bool triesAllFaults()
{
    return qgetenv("ZV_FAULTS") == "all";
}

/// An operation whose promise is looked at under each fault.
struct Operation
{
    /// The folder whose files count.
    QString folder;
    /// Makes everything as it was before.
    std::function<void()> prepare;
    /// What is done, with faults.
    std::function<void()> run;
    /// What is wrong after that, without faults; empty if the promise was kept.
    std::function<QString(const Injected&)> problem;
    /// Whether a random tenth of the faults is enough.
    bool isLarge = false;
};

/// Counts what a program has tried.
struct Tally
{
    int operations = 0;
    int faults = 0;

    static Tally& all()
    {
        static Tally tally;
        return tally;
    }

    static void print() { qInfo("%d operations, %d faults", all().operations, all().faults); }
};

inline Injected injected(const Operation& operation, const FaultKind& kind, int number)
{
    operation.prepare();
    const zv_fault fault = {number, kind.action, kind.error, kind.lasts};
    const Faults faults(operation.folder, fault);
    operation.run();
    return {number, zv_faults_calls(), zv_faults_struck()};
}

/// Of so many faults a random one is tried.
inline int oneOf(const Operation& operation)
{
    if (triesAllFaults())
        return 1;
#if defined(ZV_SANITIZED)
    // Each takes ten times as long; all of them are tried without the sanitizer.
    return operation.isLarge ? 30 : 3;
#else
    return operation.isLarge ? 10 : 1;
#endif
}

/// Runs \p operation with fault 1, 2, 3 and so on until a run meets none. \return the first problem, or
/// an empty text
inline QString drive(const Operation& operation, const FaultKind& kind)
{
    const FaultKind nothing = {"nothing", zv_fault_none, 0, 0, true};
    const Injected plain = injected(operation, nothing, 0);
    const QString problem = operation.problem(plain);
    if (!problem.isEmpty())
        return "without a fault: " + problem;
    if (plain.calls == 0)
        return "no call was counted";
    ++Tally::all().operations;
    QRandomGenerator random(static_cast<quint32>(plain.calls));
    for (int number = 1;; ++number) {
        if (number <= plain.calls && random.bounded(oneOf(operation)) != 0)
            continue;
        const Injected fault = injected(operation, kind, number);
        const QString found = operation.problem(fault);
        if (!found.isEmpty())
            return QString("%1 at call %2 (%3): %4")
                .arg(kind.name)
                .arg(number)
                .arg(QString::fromLatin1(fault.call), found);
        if (fault.calls < number)
            return {};
        if (!fault.call.isEmpty())
            ++Tally::all().faults;
    }
}

/// Adds a row for each kind of fault.
inline void addFaultKinds()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < faultKindCount(); ++kind)
        QTest::newRow(faultKind(kind).name) << kind;
}

} // namespace zvtest
