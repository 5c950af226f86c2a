#include "shell/EndSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace workbench {

namespace {

constexpr std::array<int, 3> endSignals = {SIGTERM, SIGHUP, SIGINT};

std::array<int, 2> sockets = {-1, -1}; // of the handler, of the notifier
std::array<struct sigaction, endSignals.size()> before;

} // namespace

extern "C" {

/// Does no more than a signal handler may: the work is done by the event loop.
static void noteEndSignal(int /*signal*/)
{
    const int error = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(sockets[0], &byte, 1);
    errno = error;
}
}

EndSignals::EndSignals(QObject* parent)
    : QObject(parent)
{
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()) != 0)
        return;
    for (const int each : sockets) {
        fcntl(each, F_SETFD, FD_CLOEXEC);
        fcntl(each, F_SETFL, O_NONBLOCK);
    }
    auto* const notifier = new QSocketNotifier(sockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (read(sockets[1], bytes.data(), bytes.size()) > 0) { }
        Q_EMIT received();
    });
    struct sigaction action = {};
    action.sa_handler = &noteEndSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < endSignals.size(); ++i) {
        sigaction(endSignals[i], nullptr, &before[i]);
        // A program that was started by nohup goes on.
        if (before[i].sa_handler != SIG_IGN)
            sigaction(endSignals[i], &action, nullptr);
    }
}

EndSignals::~EndSignals()
{
    if (sockets[0] < 0)
        return;
    for (std::size_t i = 0; i < endSignals.size(); ++i)
        sigaction(endSignals[i], &before[i], nullptr);
    for (int& each : sockets) {
        close(each);
        each = -1;
    }
}

} // namespace workbench
