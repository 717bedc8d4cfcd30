#include "Signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

// A handler may do little more than write to a pipe, whose other end the event loop watches.
int pipeEnds[2] = {-1, -1};

void handle(int number) {
    const int before = errno;
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1);
    errno = before;
}

constexpr int kStopping[] = {SIGTERM, SIGINT, SIGHUP};

}  // namespace

Signals::Signals() {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &Signals::read);
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    action.sa_handler = handle;
    for (const int number : kStopping) {
        struct sigaction before = {};
        sigaction(number, nullptr, &before);
        // Not for one who outlives the terminal.
        if (number != SIGHUP || before.sa_handler != SIG_IGN)
            sigaction(number, &action, nullptr);
    }
    sigaction(SIGUSR1, &action, nullptr);
}

Signals::~Signals() {
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR1})
        std::signal(number, SIG_IGN);
    m_notifier.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
}

void Signals::read() {
    unsigned char number = 0;
    while (::read(pipeEnds[0], &number, 1) == 1) {
        if (number == SIGUSR1)
            Q_EMIT silenceWanted();
        else
            Q_EMIT stopWanted();
    }
}
