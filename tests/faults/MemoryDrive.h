#pragma once

#include "Drive.h"
#include "memory_faults.h"

#include <QByteArray>
#include <QString>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <new>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zvtest {

/// Runs a part of a case with one allocation failing.
class ShortOfMemory
{
public:
    explicit ShortOfMemory(int number)
        : m_number(number)
    {
    }

    /// Returns whether \p work went through. Otherwise it has thrown `std::bad_alloc`; whatever else
    /// it throws goes to the caller.
    template <typename Work>
    bool operator()(Work work)
    {
        bool isDone = false;
        try {
            memory::arm(m_number);
            work();
            isDone = true;
        } catch (const std::bad_alloc&) {
        } catch (...) {
            m_wasHit |= memory::disarm();
            throw;
        }
        m_wasHit |= memory::disarm();
        return isDone;
    }

    bool wasHit() const { return m_wasHit; }

private:
    int m_number;
    bool m_wasHit = false;
};

/// An operation, and what can still be done after it. Returns what is wrong, or null.
using MemoryCase = const char* (*)(ShortOfMemory& shortOfMemory);

/// Whether Qt itself may lose some of its memory when it has too little.
enum class Losses {
    None,
    InQt,
};

namespace details {

struct MemoryProgress
{
    int number;
    bool isOver;
    char problem[200];
};

inline void note(MemoryProgress& progress, const char* problem)
{
    std::strncpy(progress.problem, problem, sizeof(progress.problem) - 1);
}

#if defined(ZV_SANITIZED)
// Each takes ten times as long; all of them are tried without the sanitizer.
constexpr int memoryStep = 3;
#else
constexpr int memoryStep = 1;
#endif

/// Tries one allocation after the other, in a process that may end at any of them.
inline void tryAll(MemoryProgress& progress, MemoryCase work, Losses losses)
{
    // Whatever is made once in a process is made without a fault, or by the first one.
    ShortOfMemory never(0);
    work(never);
    ShortOfMemory first(1);
    first([] {
        void* volatile block = std::malloc(1); // volatile, or the compiler leaves both calls out
        std::free(block);
    });
    for (; !progress.isOver && progress.problem[0] == '\0'; progress.number += memoryStep) {
        const long before = memory::liveBlocks();
        ShortOfMemory fault(progress.number);
        try {
            if (const char* const problem = work(fault))
                note(progress, problem);
        } catch (const std::exception& exception) {
            note(progress, exception.what());
        } catch (...) {
            note(progress, "an exception of another kind");
        }
        progress.isOver = !fault.wasHit();
        if (losses == Losses::None && memory::liveBlocks() > before)
            note(progress, "memory is lost");
    }
    progress.number -= memoryStep;
}

} // namespace details

/// Runs \p work in a child of this process with allocation 1, 2, 3 and so on failing, until none
/// does. \return the first problem, or an empty text
inline QString driveMemory(MemoryCase work, Losses losses = Losses::None)
{
    using details::MemoryProgress;
    void* const page = mmap(nullptr, sizeof(MemoryProgress), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return "no memory for the test itself";
    auto* const progress = new (page) MemoryProgress();
    progress->number = 1;
    const pid_t child = fork();
    if (child == 0) {
        // Qt Test would attach a debugger to a process that crashes.
        for (const int crash : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV})
            std::signal(crash, SIG_DFL);
        details::tryAll(*progress, work, losses);
        _exit(0);
    }
    int status = 0;
    QString problem;
    if (child < 0 || waitpid(child, &status, 0) != child)
        problem = "no process";
    else if (WIFSIGNALED(status))
        problem = QString("the process ends by signal %1").arg(WTERMSIG(status));
    else if (progress->problem[0] != '\0')
        problem = progress->problem;
    else if (progress->number < 2)
        problem = "nothing is allocated";
    if (!problem.isEmpty())
        problem = QString("allocation %1: %2").arg(progress->number).arg(problem);
    ++Tally::all().operations;
    Tally::all().faults += progress->number - 1;
    munmap(page, sizeof(MemoryProgress));
    return problem;
}

} // namespace zvtest

Q_DECLARE_METATYPE(zvtest::MemoryCase)
