#pragma once

#include <QtGlobal>

#if defined(Q_OS_UNIX)

#include <sys/wait.h>
#include <unistd.h>

namespace zvtest {

/// Whether \p condition is true in a child of this process, which may change what it likes of itself.
template <typename Condition>
bool holdsInChild(Condition condition)
{
    const pid_t child = fork();
    if (child == 0) {
        bool holds = false;
        try {
            holds = condition();
        } catch (...) {
            _exit(2);
        }
        _exit(holds ? 0 : 1);
    }
    int status = -1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

/// Whether \p condition is true for somebody who isn't root, for whom permissions count.
template <typename Condition>
bool holdsForOrdinaryUser(Condition condition)
{
    return holdsInChild([&condition] {
        constexpr uid_t nobody = 65534;
        return (geteuid() != 0 || setuid(nobody) == 0) && condition();
    });
}

} // namespace zvtest

#endif
