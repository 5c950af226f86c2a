#pragma once

#include "Drive.h"

#include <QString>

#include <csignal>
#include <cstring>
#include <functional>
#include <new>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zvtest {

/// What a child of this process has done under a fault.
struct ForkedRun
{
    int calls = 0;
    QByteArray call; ///< name of the function that was hit; empty if none was
    bool isKilled = false;
    int result = -1; ///< what the work returned; -1 if it didn't
};

/// Runs \p work in a child of this process, where it may make an application or be killed. The work
/// returns a number from 0 to 127.
inline ForkedRun runInChild(const QString& folder, const zv_fault& fault,
                            const std::function<int()>& work)
{
    struct Shared
    {
        int calls;
        char call[32];
    };
    void* const page =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return {};
    auto* const shared = new (page) Shared();
    const pid_t child = fork();
    if (child == 0) {
        int result = 0;
        {
            const Faults faults(folder, fault);
            result = work();
            shared->calls = zv_faults_calls();
            std::strncpy(shared->call, zv_faults_struck(), sizeof(shared->call) - 1);
        }
        _exit(result);
    }
    int status = 0;
    const bool hasEnded = child > 0 && waitpid(child, &status, 0) == child;
    ForkedRun run;
    run.calls = shared->calls;
    run.call = shared->call;
    run.isKilled = hasEnded && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    run.result = hasEnded && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    munmap(page, sizeof(Shared));
    return run;
}

} // namespace zvtest
